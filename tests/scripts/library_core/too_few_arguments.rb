# The count is checked before anything else; nil arguments count, missing ones do not.
puts(pcall(len))  #=> [true, false, len expects exactly 1 argument]
puts(pcall(to_s))  #=> [true, false, to_s expects exactly 1 argument]
puts(pcall(type_of))  #=> [true, false, type_of expects exactly 1 argument]
puts(pcall(to_i))  #=> [true, false, to_i expects between 1 and 2 arguments]
puts(pcall(to_f))  #=> [true, false, to_f expects exactly 1 argument]
puts(pcall(to_number))  #=> [true, false, to_number expects between 1 and 2 arguments]
puts(pcall(load))  #=> [true, false, load expects between 1 and 2 arguments]
puts(pcall(range))  #=> [true, false, range expects between 1 and 3 arguments]
