g = 1
def copies(a, b)
  c = a
  a = b
  b = c
  puts(a, b, c)
  c = [a, b]
  a[b] = c
  a = a
  return c
end
def last_reads(a, b)
  a = puts(a)
  a = puts(a, a)
  a = a + "x"
  a = "x" + a
  a = [a]
  b = a
  return puts(b, a)
end
def read_again(a)
  b = a
  a = a + a + b
  return a
end
def returned(a)
  return a + "tail"
end
def returned_call(a, b)
  return puts(a, b, a)
end
def kept(a)
  puts(a)
  return a
end
