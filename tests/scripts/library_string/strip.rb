# White space is blank, tab, line feed, carriage return, vertical tab and form feed.
def show(text)
  puts("[" + text + "]")
end
show(string_strip("  x \n"))  #=> [x]
show(string_lstrip("  x "))  #=> [x ]
show(string_rstrip("  x "))  #=> [  x]
show(string_strip("\t\r\n a b \r\n\t"))  #=> [a b]
ends = string_char(9, 10, 11, 12, 13, 32)
show(string_strip(ends + "x" + ends))  #=> [x]
show(string_strip(ends))  #=> []
show(string_lstrip(ends))  #=> []
show(string_rstrip(ends))  #=> []
show(string_strip(""))  #=> []
show(string_lstrip("") + string_rstrip(""))  #=> []
show(string_strip("plain") + string_lstrip("plain") + string_rstrip("plain"))  #=> [plainplainplain]
puts(len(string_lstrip(" a ")), len(string_rstrip(" a ")))  #=> 2 2
