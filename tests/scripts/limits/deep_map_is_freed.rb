def nest(n)
  inner = 1
  while n > 0 do
    m = map_new()
    m["next"] = inner
    inner = m
    n = n - 1
  end
  return inner
end
a = nest(300000)
a = nil
puts("freed")
