# A built-in is an ordinary value: it has a type, can be stored, compared and overwritten.
puts(type_of(puts), type_of(string_include?), type_of(table_set))  #=> function function function
length = len
puts(length("abc"), length == len, len == puts)  #=> 3 true false
functions = [string_upper, string_lower]
puts(functions[0]("Mixed"), functions[1]("Mixed"))  #=> MIXED mixed
def len(value)
  return "mine"
end
puts(len("abc"), length("abc"))  #=> mine 3
string_upper = 5
puts(string_upper, functions[0]("x"))  #=> 5 X
