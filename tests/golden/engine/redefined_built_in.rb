def len(a) return 1 end
array_push = puts
def f(a)
  array_push(a, 1)
  return len(a)
end
