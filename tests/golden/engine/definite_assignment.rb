def in_one_branch(a)
  if a then x = 1 end
  return x
end
def in_both_branches(a)
  if a then x = 1 else x = 2 end
  return x
end
def in_a_loop(a)
  while a do
    x = 1
    a = x
  end
  return x
end
def before_and_after
  y = x
  x = 1
  return x + y
end
def leaves_otherwise(a)
  if a then
    x = 1
  else
    return 0
  end
  return x
end
def undefined_globals(a)
  if a then puts(u) end
  puts(u, v)
  puts(u, v)
  return w
end
puts(later, later)
later = 1
puts(later)
if later then maybe = 2 end
puts(maybe, maybe)
