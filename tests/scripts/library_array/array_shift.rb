# The first element goes, the others move down.
list = [1, "b", [3]]
puts(array_shift(list), list)  #=> 1 [b, [3]]
puts(array_shift(list), list)  #=> b [[3]]
puts(array_shift(list), list)  #=> [3] []
puts(array_shift(list), list)  #=> nil []
puts(array_shift([nil, 1]))  #=> nil
