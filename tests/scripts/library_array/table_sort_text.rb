# Strings sort by their bytes; a beginning comes before the longer string.
words = ["b", "a", "B"]
table_sort(words)
puts(words)  #=> [B, a, b]
words = ["abc", "ab", "", "abd", "a"]
table_sort(words)
puts(array_join(words, "|"))  #=> |a|ab|abc|abd
words = ["é", "z", "~"]
table_sort(words)
puts(words)  #=> [z, ~, é]
words = ["10", "9", "1"]
table_sort(words)
puts(words)  #=> [1, 10, 9]
