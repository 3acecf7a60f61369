# The chunk is a function without parameters.
chunk = load("return 1")
puts(pcall(chunk, 5))  #=> [true, false, <load>:0: function '<main>' expected 0 arguments but received 1]
