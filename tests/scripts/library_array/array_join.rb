# The texts of the elements, with the separator between them.
puts(array_join([1, 2, 3], ", "))  #=> 1, 2, 3
puts(array_join([1, 2, 3]), array_join([1, 2, 3], ""))  #=> 123 123
puts("[" + array_join([]) + "]", "[" + array_join([], "-") + "]")  #=> [] []
puts(array_join(["one"], "-"), array_join(["", "", ""], "-"))  #=> one --
m = map_new()
m["k"] = 1
puts(array_join([nil, true, 2.5, 1.0, "a", [1, "b"], m, len], "|"))
#=> nil|true|2.5|1|a|[1, b]|{k: 1}|[function len]
puts(type_of(array_join([])), type_of(array_join([1])))  #=> string string
puts(len(array_join(["a", "b"], string_char(0))))  #=> 3
