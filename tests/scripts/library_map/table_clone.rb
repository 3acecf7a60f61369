# Arrays and maps can be cloned; containers inside stay shared.
inner = [1]
list = [inner, 2]
copy = table_clone(list)
copy[1] = "changed"
array_push(inner, "shared")
puts(list, copy)  #=> [[1, shared], 2] [[1, shared], changed]
m = map_new()
m["inner"] = inner
copy = table_clone(m)
copy["more"] = 1
puts(m, copy)  #=> {inner: [1, shared]} {inner: [1, shared], more: 1}
puts(table_clone([]), table_clone(map_new()), type_of(table_clone(m)))  #=> [] {} map
