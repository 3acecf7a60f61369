# A piece that ends before it begins is empty.
def show(text)
  puts("[" + text + "]")
end
show(string_sub("hello", 4, 2))  #=> []
show(string_sub("hello", 6))  #=> []
show(string_sub("hello", 1, 0))  #=> []
show(string_sub("hello", 0, 0))  #=> []
show(string_sub("hello", 1, -6))  #=> []
show(string_sub("hello", 1, -9223372036854775807 - 1))  #=> []
show(string_sub("hello", 9223372036854775807))  #=> []
show(string_sub("", 1))  #=> []
show(string_sub("", -1, -1))  #=> []
show(string_sub("", 0, 5))  #=> []
