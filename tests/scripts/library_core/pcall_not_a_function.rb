# Protecting something that is no function is a two-element failure.
puts(pcall(5))  #=> [false, pcall expects a function]
puts(pcall(nil))  #=> [false, pcall expects a function]
puts(pcall("len", "abc"))  #=> [false, pcall expects a function]
puts(pcall([len]))  #=> [false, pcall expects a function]
puts(len(pcall(5)))  #=> 2
