puts(1, )
puts(2, )
