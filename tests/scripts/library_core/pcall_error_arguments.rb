# Too many arguments for error are not caught by the pcall that protects it, only by one further out.
puts(pcall(pcall, error, 1, 2))  #=> [true, false, error expects between 0 and 1 arguments]
pcall(error, 1, 2)
