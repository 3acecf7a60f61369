# len: bytes of a string, elements of an array, entries of a map; always an integer.
puts(len(""), len("abc"), len("héllo"))  #=> 0 3 6
puts(len([]), len([1, 2, 3]), len([nil, nil]), len([[1, 2, 3]]))  #=> 0 3 2 1
m = map_new()
puts(len(m))  #=> 0
m["a"] = 1
m["b"] = nil
m["a"] = 2
puts(len(m))  #=> 2
puts(len("a" + string_char(0) + "b"))  #=> 3
puts(type_of(len("abc")))  #=> integer
