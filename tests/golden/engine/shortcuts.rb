g = [1]
def lengths(a)
  n = len(a)
  n = len(g)
  n = len("text")
  n = len(a[0])
  n = len(a) + len(g)
  if len(a) == 0 then return 0 end
  len(a)
  return len(a, a)
end
def pushes(a, x)
  array_push(a, x)
  array_push(a, 1)
  array_push(g, [x])
  array_push(a, len(a))
  x = array_push(a, x)
  array_push(a)
  return array_push(a, x)
end
def shadowed(len, array_push)
  array_push(1, 2)
  return len(1)
end
array_push(g, 2)
n = len(g)
