def dive(n)
  if n == 0 then error("bottom") end
  r = dive(n - 1)
  return r
end
puts(pcall(dive, 5000))
def dive_two(n)
  if n == 0 then x = [] - 1 end
  return dive_two(n - 1)
end
puts(pcall(dive_two, 5000))
