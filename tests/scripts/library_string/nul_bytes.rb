# A NUL byte is a byte like any other in every string operation.
nul = string_char(0)
text = "a" + nul + "b"
puts(len(text), len(text + text), text == "a", text == "a" + nul + "b", text < "ab", nul > "")
#=> 3 6 false true true true
puts(string_byte(string_reverse(text), 1, -1), string_byte(string_upper(text), 1, -1))  #=> [98, 0, 97] [65, 0, 66]
puts(string_byte(text[1]), string_sub(text, 3), len(string_rep(nul, 5)), utf8_len(text))  #=> [0] b 5 3
puts(string_split(text, nul), array_join(["x", "y"], nul) == "x" + nul + "y")  #=> [a, b] true
puts(string_include?(text, nul), string_include?(text, nul + "b"), string_include?("ab", nul))  #=> true true false
puts(string_start_with?(text, "a" + nul), string_end_with?(text, nul + "b"), string_end_with?(text, nul))
#=> true true false
puts(len(string_strip(" " + nul + " ")), len(to_s(text)), len(string_lower(text)))  #=> 1 3 3
