def less(a, b) r = a < b return r end
def less_equal(a, b) r = a <= b return r end
def greater(a, b) r = a > b return r end
def greater_equal(a, b) r = a >= b return r end
puts(pcall(less, 1, "2"))
puts(pcall(less, "1", 2))
puts(pcall(less_equal, nil, 1))
puts(pcall(less_equal, nil, nil))
puts(pcall(greater, [1], [2]))
puts(pcall(greater, map_new(), map_new()))
puts(pcall(greater_equal, puts, puts))
puts(pcall(greater_equal, true, "true"))
