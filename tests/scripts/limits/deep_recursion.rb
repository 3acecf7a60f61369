# Script calls do not use the native stack: a hundred thousand of them are nothing special.
def depth(n)
  if n == 0 then return 0 end
  return 1 + depth(n - 1)
end
puts(depth(100000))
def sum(list, i)
  if i == len(list) then return 0 end
  rest = sum(list, i + 1)
  return list[i] + rest
end
puts(sum(range(1, 50000), 0))
