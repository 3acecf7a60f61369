# Errors of a running chunk name the chunk.
puts(pcall(load("x = 1\nx / 0")))  #=> [true, false, <load>:2: division by zero]
puts(pcall(load("nil + 1", "calc")))  #=> [true, false, calc:1: operator '+' expects numbers, strings, or arrays]
puts(pcall(load("nil + 1", "")))  #=> [true, false, :1: operator '+' expects numbers, strings, or arrays]
puts(pcall(load("error('plain')")))  #=> [true, false, plain]
