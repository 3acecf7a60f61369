# The indices of an array; the keys of a map as strings, in byte order.
puts(keys(["a", "b", "c"]), keys([]))  #=> [0, 1, 2] []
puts(type_of(keys(["a"])[0]))  #=> integer
m = map_new()
m["b"] = 1
m["a"] = 2
m["ab"] = 3
puts(keys(m), keys(map_new()))  #=> [a, ab, b] []
numbers = map_new()
numbers[10] = 1
numbers[9] = 1
numbers[1] = 1
puts(keys(numbers), type_of(keys(numbers)[0]))  #=> [1, 10, 9] string
