# pcall can protect pcall; the inner result is then the value of the outer one.
puts(pcall(pcall, len, "abc"))  #=> [true, [true, 3]]
puts(pcall(pcall, error, "x"))  #=> [true, [false, x]]
puts(pcall(pcall, len))  #=> [true, [true, false, len expects exactly 1 argument]]
puts(pcall(pcall, 5))  #=> [true, [false, pcall expects a function]]
