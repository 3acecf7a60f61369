def dive(n)
  if n == 0 then error("bottom") end
  r = dive(n - 1)
  return r
end
puts(pcall(dive, 200000))
def dive_two(n)
  if n == 0 then return nil - 1 end
  r = dive_two(n - 1)
  return r
end
puts(pcall(dive_two, 200000))
