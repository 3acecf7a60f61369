def note(name, value)
  print(name, " ")
  return value
end
puts(note("a", false) and note("b", true))
puts(note("c", true) or note("d", false))
puts(note("e", nil) && note("f", nil))
puts(note("g", 1) || note("h", nil))
puts(note("i", false) and note("j", false) or note("k", true) and note("l", 1))
if note("m", false) and note("n", 1) then puts("yes") else puts("no") end
