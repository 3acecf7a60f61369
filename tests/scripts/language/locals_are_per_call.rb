def fact(n)
  m = n
  if n > 1 then rest = fact(n - 1) else rest = 1 end
  return m * rest
end
puts(fact(20))
def depth(n)
  mine = n
  if n > 0 then depth(n - 1) end
  return mine
end
puts(depth(5))
