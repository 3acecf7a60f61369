# The pattern %d+ finds the first run of digits.
puts(string_find("abc123def45", "%d+"), string_find("7", "%d+"), string_find("a1", "%d+"))  #=> [4, 6] [1, 1] [2, 2]
puts(string_find("no digits", "%d+"), string_find("", "%d+"), string_find("a%d+", "%d+"))  #=> nil nil nil
puts(string_find("007 agents", "%d+"), string_find("-12.5", "%d+"))  #=> [1, 3] [2, 3]
