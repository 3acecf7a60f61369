# Results that are arrays are new ones: changing one touches neither the argument nor a later result.
list = [1, 2, 3]
text = "a-b"
results = [array_slice(list, 0), array_reverse(list), values(list), table_clone(list), keys(list), range(3)]
array_push(results, string_split(text, "-"), string_byte(text), string_gmatch(text, "b"), string_find(text, "b"))
i = 0
while i < len(results)
  array_push(results[i], "extra")
  i = i + 1
end
puts(list, text)  #=> [1, 2, 3] a-b
puts(array_slice(list, 0), array_reverse(list), values(list), keys(list), range(3))
#=> [1, 2, 3] [3, 2, 1] [1, 2, 3] [0, 1, 2] [0, 1, 2]
puts(string_split(text, "-"), string_byte(text), string_gmatch(text, "b"), string_find(text, "b"))
#=> [a, b] [97] [b] [3, 3]
