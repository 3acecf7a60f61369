# array_new: no size, a size filled with nil, a size and a fill value.
puts(array_new())  #=> []
puts(array_new(3))  #=> [nil, nil, nil]
puts(array_new(2, "x"))  #=> [x, x]
puts(array_new(0), array_new(0, "x"), array_new(2, nil))  #=> [] [] [nil, nil]
puts(array_new(2.9), array_new(true, 7), array_new(false, 7), array_new(-0.9))  #=> [nil, nil] [7] [] []
puts(type_of(array_new()), len(array_new(1000)))  #=> array 1000
