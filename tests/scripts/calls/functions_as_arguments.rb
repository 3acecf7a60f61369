def map_array(f, list)
  result = []
  i = 0
  while i < len(list) do
    array_push(result, f(list[i]))
    i = i + 1
  end
  return result
end
def square(x) return x * x end
puts(map_array(square, [1, 2, 3]), map_array(to_s, [1, nil, [2]]), map_array(type_of, [1, "a", 2.5]))
def compose(f, g, x) return f(g(x)) end
puts(compose(square, len, "abcd"))
