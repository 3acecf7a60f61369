# The values may come from the array that grows.
list = [1, 2]
array_push(list, list[0], list[1], list[0])
puts(list)  #=> [1, 2, 1, 2, 1]
names = ["a string that is too long for any inline storage"]
i = 0
while i < 40
  array_push(names, names[0])
  i = i + 1
end
puts(len(names), names[40] == names[0])  #=> 41 true
