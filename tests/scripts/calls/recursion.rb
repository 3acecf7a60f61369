def fib(n)
  if n < 2 then return n end
  return fib(n - 1) + fib(n - 2)
end
puts(fib(0), fib(1), fib(20))
def gcd(a, b)
  if b == 0 then return a end
  return gcd(b, a % b)
end
puts(gcd(1071, 462))
def ackermann(m, n)
  if m == 0 then return n + 1 end
  if n == 0 then return ackermann(m - 1, 1) end
  return ackermann(m - 1, ackermann(m, n - 1))
end
puts(ackermann(2, 3))
