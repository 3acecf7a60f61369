# A call that fails gives three elements: true, false and the message.
def divide(a, b)
  quotient = a / b
  return quotient
end
result = pcall(divide, 1, 0)
puts(result, len(result))  #=> [true, false, pcall_failure.rb:3: division by zero] 3
puts(pcall(divide, 1))  #=> [true, false, pcall_failure.rb:0: function 'divide' expected 2 arguments but received 1]
puts(pcall(len, 5))  #=> [true, false, len expects a string, array, or map]
puts(pcall(table_set, [], -1, 0))  #=> [true, false, table_set array index must be non-negative]
puts(pcall(load, "x = ("))  #=> [true, false, <load>:1:6: expected expression]
