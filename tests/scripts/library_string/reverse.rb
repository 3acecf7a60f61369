# The bytes in reverse order; a character of several bytes is turned round too.
puts(string_reverse("abc"), string_reverse("a"), "[" + string_reverse("") + "]")  #=> cba a []
puts(string_byte(string_reverse("é"), 1, 2), string_reverse(string_reverse("né")) == "né")  #=> [169, 195] true

# Every size.
text = ""
size = 0
right = 0
while size < 40
  backwards = ""
  i = size
  while i > 0
    backwards = backwards + string_sub(text, i, i)
    i = i - 1
  end
  if string_reverse(text) == backwards
    right = right + 1
  end
  text = text + string_char(65 + size)
  size = size + 1
end
puts(right, string_reverse(text))  #=> 40 hgfedcba`_^]\[ZYXWVUTSRQPONMLKJIHGFEDCBA
