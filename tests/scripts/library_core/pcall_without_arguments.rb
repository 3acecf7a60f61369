# The argument count of pcall itself is checked outside the protection.
puts(pcall(pcall))  #=> [true, false, pcall expects at least 1 arguments]
pcall()
