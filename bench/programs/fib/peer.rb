n = 35
# Doubly recursive Fibonacci numbers: calls, comparisons and integer sums.
def fib(k)
  if k < 2
    return k
  end
  fib(k - 1) + fib(k - 2)
end

puts fib(n)
