# A message may hold a NUL byte; it is kept whole.
def raise_it(value)
  error(value)
end
message = pcall(raise_it, "a" + string_char(0) + "b")[2]
puts(len(message), string_byte(message, 1, -1))  #=> 3 [97, 0, 98]
