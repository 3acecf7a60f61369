def first_multiple(n, from)
  i = from
  while true do
    if i % n == 0 then return i end
    i = i + 1
  end
end
puts(first_multiple(7, 30))
