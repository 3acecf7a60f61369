def f(n)
  x = nil
  if n == 1
    y = 1 / 0
  elsif n == 2
    return -"a"
  elsif n - 1 == 2
    z = 1 < "c"
  else
    x[0]
  end
end
def g(n)
  i = 0
  while i < n

    i = i + 1
  end

  a = [1]
  a[0 - n] = 5
end
puts(pcall(f, 1))
puts(pcall(f, 2))
puts(pcall(f, 3))
puts(pcall(f, 4))
puts(pcall(g, 2))
