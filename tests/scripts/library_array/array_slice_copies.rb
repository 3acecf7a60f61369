# The slice is a new array, its elements are shared.
inner = ["x"]
list = [inner, 2]
part = array_slice(list, 0)
part[1] = "changed"
array_push(inner, "y")
puts(list, part)  #=> [[x, y], 2] [[x, y], changed]
puts(array_slice(list, 0) == list)  #=> true
