limit = 3
def comparison(n)
  i = 0
  while i < n do i = i + 1 end
  while i != limit do i = i - 1 end
  return i
end
def nested(n)
  i = 0
  while i < n
    j = i
    while j > 0 do
      j = j - 1
    end
    i = i + 1
  end
  return i
end
def conditions(a, b)
  while a and b do a = b end
  while a or b do a = b end
  while not a do a = b end
  while a do a = b end
  while a[b] do b = b + 1 end
  while not a[b] do b = b + 1 end
  while a() do b = b + 1 end
  while len(a) > b do b = b + 1 end
  while a < b and b < limit do b = b + 1 end
  return b
end
def constant(a)
  while true
    if a then return a end
    a = a + 1
  end
end
def long_condition(a)
  while a + 1 + 2 + 3 + 4 + 5 + 6 + 7 + 8 + 9 + 10 < 100 do a = a + 1 end
  while a + 1 + 2 + 3 + 4 + 5 + 6 + 7 + 8 + 9 + 10 + 11 < 100 do a = a + 1 end
  return a
end
def empty(a)
  while a do end
  while a < 1 do end
  return a
end
def longest_condition(a)
  while -(a + 1 + 2 + 3 + 4 + 5 + 6 + 7 + 8 + 9 + 10) < 100 do a = a + 1 end
  while nil do a = a + 1 end
  return a
end
