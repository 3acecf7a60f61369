def f(n)
  x = f(n + 1)
  return x
end
def many(a, b, c, d, e, g, h, i)
  return [many(a, b, c, d, e, g, h, i)]
end
chunk = "\nload(chunk)()"
puts(pcall(f, 0)[2])
puts(pcall(many, 1, 2, 3, 4, 5, 6, 7, 8)[2])
puts(pcall(load(chunk))[2])
