def flatten(list, into)
  i = 0
  while i < len(list) do
    flatten_one(list[i], into)
    i = i + 1
  end
  return into
end
def flatten_one(x, into)
  if type_of(x) == "array" then flatten(x, into) else array_push(into, x) end
end
puts(flatten([1, [2, [3, [4, []], 5]], [[6]]], []))
