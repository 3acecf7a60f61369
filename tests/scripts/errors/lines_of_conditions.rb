# An error in a condition is reported for the condition's own line.
def f(n)
  if n == 1 then
    return 1
  elsif n[0] == 5 then
    return 5
  end
  return 0
end
def g(n)
  i = 0

  while i < n

    i = i + 1
  end
  return i
end
def h(n)
  if n < 1
    return 2
  end
end
puts(pcall(f, 1), pcall(f, [5]), pcall(g, 4))
puts(pcall(f, 2))
puts(pcall(g, "x"))
puts(pcall(h, nil))
