# Every byte is shown as it is, control bytes and halves of characters included.
def code(byte)
  r = pcall(load, "x = 1" + string_char(byte))
  text = r[2]
  return [string_sub(text, 1, -3), string_byte(text, -2)]
end
puts(code(0))
puts(code(1))
puts(code(8))
puts(code(27))
puts(code(127))
puts(code(128))
puts(code(195))
puts(code(255))
