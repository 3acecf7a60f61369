# For anything but text a base outside the range does not matter.
puts(to_i(5, 99), to_i(2.9, 0), to_i(true, -1), to_i(nil, 1))  #=> 5 2 1 nil
