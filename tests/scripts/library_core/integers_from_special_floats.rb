# Where an integer is asked for, infinities are the integer limits and NaN is 0.
infinity = 0 - math_log(0)
nan = math_sqrt(-1)
puts(string_sub("hello", nan), string_sub("hello", 2, infinity), string_sub("hello", -infinity, 2))  #=> hello ello he
puts("[" + string_sub("hello", infinity) + "]", string_byte("AB", -infinity, infinity))  #=> [] [65, 66]
puts("[" + string_rep("x", nan) + string_rep("x", -infinity) + "]", pcall(string_rep, "x", infinity)[2])
#=> [] out of memory
puts(array_slice([1, 2], nan), array_slice([1, 2], -infinity), array_slice([1, 2], 0, infinity))  #=> [1, 2] [] [1, 2]
puts(array_pop([1, 2], infinity), array_pop([1, 2], nan), array_new(nan))  #=> [1, 2] [] []
puts(range(nan), range(nan, 2), range(-infinity), pcall(range, infinity)[2])  #=> [] [0, 1, 2] [] out of memory
puts(table_get([1, 2], nan), table_get([1, 2], infinity), table_has_key([1], -infinity))  #=> 1 nil false
puts(pcall(table_set, [], -infinity, 1)[2])  #=> table_set array index must be non-negative
puts(pcall(table_set, [], infinity, 1)[2])  #=> out of memory
puts(pcall(to_i, "10", infinity)[2], string_split("a,b", ",", infinity))
#=> to_i base must be between 2 and 36 [a, b]
puts(pcall(string_char, infinity)[2], len(string_char(nan)))  #=> string_char code must be between 0 and 255 1
