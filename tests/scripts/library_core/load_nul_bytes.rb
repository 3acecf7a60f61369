# The source text may hold NUL bytes: inside a string they are bytes, elsewhere they are out of place.
nul = string_char(0)
puts(len(load("return 'a" + nul + "b'")()))  #=> 3
puts(load("1 # a remark" + nul + " goes on\n2")())  #=> 2
message = pcall(load, "x = 1" + nul)[2]
puts(message == "<load>:1:6: unexpected character '" + nul + "'")  #=> true
message = pcall(load, "nil + 1", "a" + nul + "b")
puts(type_of(message[1]))  #=> function
puts(pcall(message[1])[2] == "a" + nul + "b:1: operator '+' expects numbers, strings, or arrays")  #=> true
