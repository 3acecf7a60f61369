# load compiles and runs nothing; calling the function runs the chunk at the top level.
chunk = load("puts('running') x = 5 return x * 2")
puts(type_of(chunk), chunk)  #=> function [function <load>]
puts(pcall(chunk))
#=> running
#=> [true, 10]
puts(x)  #=> 5
puts(chunk())
#=> running
#=> 10
