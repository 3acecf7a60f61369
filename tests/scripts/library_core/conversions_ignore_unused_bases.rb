# A base that stands beside a number, a boolean or a value that cannot be converted is not even looked at.
puts(to_i(5, "x"), to_i(2.9, nil), to_i(true, []), to_i(false, to_i))  #=> 5 2 1 0
puts(to_number(5, "x"), to_number(2.5, nil), to_number(true, map_new()))  #=> 5 2.5 1
puts(to_i(nil, "x"), to_i([1], nil), to_number(nil, "x"), to_number(map_new(), []))  #=> nil nil nil nil
