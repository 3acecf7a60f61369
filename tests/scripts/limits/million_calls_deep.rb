def depth(n)
  if n == 0 then return 0 end
  return 1 + depth(n - 1)
end
puts(depth(1000000))
