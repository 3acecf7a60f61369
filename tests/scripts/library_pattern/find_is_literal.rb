# Everything else that looks like a pattern is searched for as it stands.
puts(string_find("hello", "%a"), string_find("50%a", "%a"))  #=> nil [3, 4]
puts(string_find("a1", "%d"), string_find("a%d", "%d"))  #=> nil [2, 3]
puts(string_find("abc", "."), string_find("a.c", "."))  #=> nil [2, 2]
puts(string_find("abc", "[a-c]"), string_find("[a-c]", "[a-c]"))  #=> nil [1, 5]
puts(string_find("abc", "^a"), string_find("a1b2", "%d+b"), string_find("12", " %d+"))  #=> nil nil nil
puts(string_find("key-42", "(%a+)%-(%d+)"), string_find("((%a+)%-(%d+)", "(%a+)%-(%d+)"))  #=> nil [2, 13]
