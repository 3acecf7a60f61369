def f()
  missing[0] = 1
end
puts(pcall(f))
