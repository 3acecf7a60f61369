# A condition may be any element or entry, taken in place or from a container made on the spot.
flags = [true, false, nil, 0, "", [], 2.5]
names = map_new()
names["yes"] = true
names["no"] = false
names[7] = "seven"
one = 1

def pick(container, index)
  if container[index] return "yes" end
  return "no"
end
def pick_not(container, index)
  if !container[index] return "no" end
  return "yes"
end
def pick_first(container)
  if container[0] return "yes" end
  return "no"
end
def pick_global_index(container)
  if container[one] return "yes" end
  return "no"
end
def pick_global(index)
  if flags[index] return "yes" end
  return "no"
end
def count_while(container)
  i = 0
  while container[i]
    i = i + 1
  end
  return i
end
def count_until(container)
  i = 0
  while !container[i]
    i = i + 1
  end
  return i
end

i = 0
while i < 9
  puts(i, pick(flags, i), pick_not(flags, i), pick_global(i))
  i = i + 1
end
puts(pick(names, "yes"), pick(names, "no"), pick(names, 7), pick(names, "7"), pick(names, "none"))
puts(pick_not(names, "yes"), pick_not(names, "no"), pick_not(names, 7.5))
puts(pick("text", 3), pick("text", 4), pick_not("text", 0))
puts(pick_first(flags), pick_first([false]), pick_first([]), pick_first("x"), pick_first(""))
puts(pick_global_index(flags), pick_global_index([1, 2]), pick_global_index(names))
if flags[0] puts("global, constant") end
if flags[one] puts("not this") else puts("global, global") end
if [false, [1]][one] puts("a new array") end
if [[one], nil][one] puts("not this") else puts("nil in a new array") end
if names["y" + "es"] puts("a new key") end
if "abc"[one] puts("a new text") end
if ["an " + "el" + "ement"][0] puts("a new element") end
if flags[one] == false puts("compared") end
puts(count_while([1, 2, 3]), count_while("four"), count_while([]))
puts(count_until([nil, false, 3]), count_until([1]))

# What is used up in the condition is released once, and what stays stays.
kept = ["long enough to be a text of its own"]
holder = [kept, kept]
if holder[0][0] puts(kept[0]) end
i = 0
while [kept, kept, nil][i]
  i = i + 1
end
puts(i, len(kept), kept)

# Failures name the line of the look-up.
def fail(container, index)
  x = 0
  if container[index]
    return 1
  end
  return 2
end
puts(pcall(fail, 5, 0))
puts(pcall(fail, nil, 0))
puts(pcall(fail, [1], "a"))
puts(pcall(fail, [1], nil))
puts(pcall(fail, "text", 1.5))
puts(pcall(fail, names, [1]))
puts(pcall(fail, [1], -1))
puts(pcall(fail, "text", -1))
def fail_not(container, index)
  if !container[index] return 1 end
  return 2
end
puts(pcall(fail_not, true, 0))
puts(pcall(fail_not, fail, "name"))
while 5[0]
end
