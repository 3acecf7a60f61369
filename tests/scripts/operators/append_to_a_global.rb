# A text grown in a variable of the top level, by one part or several, whatever else happens on the way.
def same(x)
  return x
end

def rebind(text)
  s = "local"
  return text
end

s = "start"
other = s
s = s + 1 + ", " + 2.5 + true + nil
puts(s, other)

s = s + same("!") + "?"
s = s + to_s(12)
puts(s)

# The parts may be the text itself, or an array that a later part changes.
s = "ab"
s = s + s + "-" + s
puts(s)
parts = [1]
def grow()
  array_push(parts, len(parts) + 1)
  return "|"
end
s = s + parts + grow() + parts + "."
puts(s)

# A number in front adds up before it meets text.
s = 1
s = s + 2 + " apples" + 3
puts(s)
s = 0.5
s = s + 1 + "x"
puts(s)

# A failing part leaves the variable as it was.
s = "kept"
failing = load("s = s + 'a' + error('failed') + 'b'")
puts(pcall(failing), s)
failing = load("s = s + 'a' + missing + 'b'")
puts(pcall(failing), s)
nothing = nil
failing = load("nothing = nothing + nothing + 'b'")
puts(pcall(failing), nothing)
failing = load("nothing = nothing + 'a' + nothing + 'b'")
puts(pcall(failing), nothing)

# A part that stores into the variable does not change the text that was read before it.
s = "old"
replace = load("s = 'new'\nreturn 'part'")
s = s + replace() + " end"
puts(s)
s = "old"
s = s + "first " + replace() + " end"
puts(s)
s = "old"
s = s + replace()
puts(s)

# Other holders keep their text.
list = [s]
s = s + " and" + same(" more")
puts(list, s)
s = s + " one"
list[0] = s
s = s + same(" two")
puts(list, s)

i = 0
s = ""
while i < 30000
  s = s + to_s(i % 10) + ","
  s = s + i % 7
  i = i + 1
end
puts(len(s), string_sub(s, 1, 12))
