def f(first)
  if first then kept = 1 end
  return kept
end
puts(f(true))
puts(pcall(f, false))
