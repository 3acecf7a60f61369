# A chunk that does not compile raises the compiler's message, with line and column.
puts(pcall(load, "1 +"))  #=> [true, false, <load>:1:4: expected expression]
puts(pcall(load, "x = 1\ny = f(1", "part"))  #=> [true, false, part:2:8: expected ')' after arguments]
puts(pcall(load, "end"))  #=> [true, false, <load>:1:1: expected expression]
puts(pcall(load, "s = 'abc"))  #=> [true, false, <load>:1:5: unterminated string literal]
puts(pcall(load, "a $ b"))  #=> [true, false, <load>:1:3: unexpected character '$']
puts(pcall(load, ")", ""))  #=> [true, false, :1:1: expected expression]
