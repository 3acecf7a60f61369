# puts writes its arguments with one blank between them, then a line feed.
puts()  #=>
puts("a")  #=> a
puts(1, "a", nil)  #=> 1 a nil
puts("", "", "|")  #=>   |
puts(2.5, true, false, [1, "x"], map_new(), puts)  #=> 2.5 true false [1, x] {} [function puts]
puts(type_of(puts()))
#=>
#=> nil
puts(nil)  #=> nil
puts("")  #=>
