# table_concat joins like array_join.
puts(table_concat([1, 2, 3], ", "))  #=> 1, 2, 3
puts(table_concat(["a", "b"]), table_concat([nil, 2.0, true], "-"))  #=> ab nil-2-true
puts("[" + table_concat([], ",") + "]", type_of(table_concat([])))  #=> [] string
