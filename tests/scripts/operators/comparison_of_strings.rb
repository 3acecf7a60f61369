# Byte by byte, as unsigned values; a proper prefix is smaller.
puts("abc" < "abd", "ab" < "abc", "abc" < "ab", "B" < "a", "10" < "9", "" < "a", "" < "")
puts("a" <= "a", "a" >= "a", "b" > "a", "a" > "b", "a" <= "b", "" <= "", "z" >= "aa")
puts("z" < "é", string_char(200) > string_char(127), string_char(255) > "~", string_char(128) < string_char(129))
puts("a" < string_char(97, 0), string_char(97, 0) < string_char(97, 1), string_char(97, 0, 98) < string_char(97, 0, 99))
