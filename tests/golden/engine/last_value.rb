def sum(a, b)
  a + b
end
def assigned(a)
  b = a * 10
end
def stored(a)
  a[0] = 1
end
def either(a)
  if a then
    1
  else
    a[0]
  end
end
def only_sometimes(a)
  if a then puts(1) end
end
def overwritten(a)
  a + 1
  a + 2
  puts(a)
end
def loses_it_in_a_loop(s)
  s
  while s != "" do
    s = s + "a"
    s[0] = "b"
    puts(s)
  end
  s
end
def never_kept(a)
  a + 1
  return a
end
def nothing
end
def passes_it_on(s)
  while s do
    s
    s = puts(s)
  end
end
