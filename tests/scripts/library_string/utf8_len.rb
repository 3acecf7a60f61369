# Bytes that do not continue a UTF-8 sequence are counted; nothing is validated.
puts(utf8_len("hello"), utf8_len("héllo"), utf8_len(""), utf8_len("日本語"), utf8_len("😀"))  #=> 5 5 0 3 1
puts(len("héllo"), len("日本語"), len("😀"))  #=> 6 9 4
puts(utf8_len(string_char(128)), utf8_len(string_char(191, 191)), utf8_len(string_char(192)))  #=> 0 0 1
puts(utf8_len(string_char(255, 254)), utf8_len(string_char(127, 0)), type_of(utf8_len("a")))  #=> 2 2 integer
