# Of the replacement's text only the first byte is stored, be it half a character; the length never changes.
def bytes_after(value)
  text = "abc"
  text[1] = value
  return string_byte(text, 1, -1)
end
m = map_new()
puts(bytes_after("é"), bytes_after(string_char(0) + "x"))  #=> [97, 195, 99] [97, 0, 99]
puts(bytes_after(m), bytes_after([]), bytes_after(len), bytes_after(true), bytes_after(-1))
#=> [97, 123, 99] [97, 91, 99] [97, 91, 99] [97, 116, 99] [97, 45, 99]
text = "aé"
text[2] = "b"
puts(len(text), string_byte(text, 1, -1))  #=> 3 [97, 195, 98]
