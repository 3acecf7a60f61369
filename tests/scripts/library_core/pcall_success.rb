# A call that succeeds gives a new array: true and the result.
def add(a, b)
  c = a + b
  return c
end
puts(pcall(add, 1, 2))  #=> [true, 3]
puts(pcall(len, "ab"))  #=> [true, 2]
def nothing
end
puts(pcall(nothing))  #=> [true, nil]
result = pcall(add, "a", "b")
puts(type_of(result), len(result), result[1])  #=> array 2 ab
puts(pcall(string_char, 72, 105))  #=> [true, Hi]
list = [1]
puts(pcall(array_push, list, 2, 3), list)  #=> [true, [1, 2, 3]] [1, 2, 3]
