# The message is the text form of whatever is given. A script function that raises shows the three-element result.
def raise_it(value)
  error(value)
  return "not reached"
end
puts(pcall(raise_it, "boom"))  #=> [true, false, boom]
puts(pcall(raise_it, 42))  #=> [true, false, 42]
puts(pcall(raise_it, 1.0))  #=> [true, false, 1]
puts(pcall(raise_it, nil))  #=> [true, false, nil]
puts(pcall(raise_it, false))  #=> [true, false, false]
puts(pcall(raise_it, [1, "a"]))  #=> [true, false, [1, a]]
puts(pcall(raise_it, error))  #=> [true, false, [function error]]
puts(pcall(raise_it, ""))  #=> [true, false, ]
puts(type_of(pcall(raise_it, 42)[2]))  #=> string
