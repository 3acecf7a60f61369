ring = [1]
array_push(ring, ring)
other = [1]
array_push(other, other)
def join()
  text = "list: "
  return text + ring
end
def append()
  text = "list: "
  text = text + 1 + ": " + ring
end
def store()
  text = "list: "
  text[0] = ring
end
def same()
  return ring == other
end
def loop()
  while ring != other do
    return 1
  end
end
def guarded(list)
  if list == 1 then error("one") end
  return "list: " + list
end
puts(pcall(join), pcall(append), pcall(store))
puts(pcall(same), pcall(loop), pcall(guarded, ring))
puts(pcall(error, ring), pcall(pcall, error, ring))
table_clear(ring)
table_clear(other)
deep = []
n = 0
while n < 1000000 do
  deep = [deep]
  n = n + 1
end
"list: " + deep
