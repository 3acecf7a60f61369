# Protecting error itself: two elements, and an empty message counts as success.
puts(pcall(error, "boom"))  #=> [false, boom]
puts(pcall(error))  #=> [false, error]
puts(pcall(error, 42), pcall(error, nil), pcall(error, [1]))  #=> [false, 42] [false, nil] [false, [1]]
puts(type_of(pcall(error, 42)[1]))  #=> string
puts(pcall(error, ""))  #=> [true, nil]
