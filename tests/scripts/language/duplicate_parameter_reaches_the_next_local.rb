# The second argument lands in the slot after "a", which belongs to the first assigned local.
def f(a, a)
  if false then x = 0 end
  return [a, x]
end
puts(f(1, 2))
