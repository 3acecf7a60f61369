def f(n)
  if n == 0 then return "old" end
  return f(n - 1)
end
old = f
def f(n) return "new" end
puts(old(0), old(1), f(5))
