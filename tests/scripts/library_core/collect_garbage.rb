# Memory is given back by itself; the call does nothing and returns nil.
list = [1, [2, 3]]
puts(collect_garbage())  #=> nil
puts(list)  #=> [1, [2, 3]]
