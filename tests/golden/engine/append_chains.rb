g = ""
e = [""]
def local(s, a)
  s = s + a
  s = s + a + "b"
  s = s + a + "b" + g + 1
  s = "b" + s + a
  s = s + (a + "b")
  return s
end
def element(l, i, a)
  l[i] = l[i] + a
  l[i] = l[i] + a + "b"
  l[0] = l[0] + a + "b" + 1
  e[i] = e[i] + a + "b"
  l[i] = l[0] + a + "b"
  return l
end
def local_or_global(a)
  g = g + a
  g = g + a + "b"
  g = g + a + "b" + a
  return g
end
g = g + "a" + "b"
e[0] = e[0] + "a" + "b"
i = 0
while i < 3 do
  g = g + i + "x"
  i = i + 1
end
def other_variable(s, t)
  s = t + s + "b"
  s = t + "a" + "b"
  s[0] = t[0] + "a" + "b"
  return s
end
g = s + "a" + "b"
