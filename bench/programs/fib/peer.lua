local n = 35
-- Doubly recursive Fibonacci numbers: calls, comparisons and integer sums.
local function fib(k)
  if k < 2 then
    return k
  end
  return fib(k - 1) + fib(k - 2)
end

print(fib(n))
