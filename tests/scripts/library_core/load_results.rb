# The value of a chunk is what it returns, or that of its last expression statement or assignment, or nil.
puts(load("return 1 + 2")())  #=> 3
puts(load("1 + 2")())  #=> 3
puts(load("1; 2; y = 9")())  #=> 9
puts(load("")())  #=> nil
puts(load("\n# nothing\n;")())  #=> nil
puts(load("return")())  #=> nil
