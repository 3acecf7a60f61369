# Growing an array beyond any memory is a script error; the array keeps what it had.
# The location of such an error is not shown here, only its text.
list = [1, 2]
def store_far(target, index)
  target[index] = "x"
  return target
end
message = pcall(store_far, list, 1000000000000)[2]
puts(string_end_with?(message, "out of memory"))  #=> true
message = pcall(store_far, list, 9223372036854775807)[2]
puts(string_end_with?(message, "out of memory"))  #=> true
message = pcall(store_far, list, 9223372036854775806)[2]
puts(string_end_with?(message, "out of memory"))  #=> true
puts(pcall(table_set, list, 1000000000000, "x"))  #=> [true, false, out of memory]
puts(pcall(table_set, list, 9223372036854775807, "x"))  #=> [true, false, out of memory]
puts(list)  #=> [1, 2]
