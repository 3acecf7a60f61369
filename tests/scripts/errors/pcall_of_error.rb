# "error" itself under pcall: a two-element failure, and success when the message is empty.
puts(pcall(error, "boom"))
puts(pcall(error))
puts(pcall(error, 42))
puts(pcall(error, 2.50))
puts(pcall(error, nil), type_of(pcall(error, nil)[1]))
puts(pcall(error, [1, "a"]))
puts(pcall(error, map_new()))
puts(pcall(error, ""))
puts(len(pcall(error, "boom")), len(pcall(error, "")), type_of(pcall(error, "")[1]))
e = error
puts(pcall(e, "alias"))
