def f(a)
  if a then
    return 1
end
puts(f(1))
