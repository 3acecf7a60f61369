# Protected calls nested without end stop in the innermost one.
def forever() return pcall(forever) end
r = pcall(forever)
puts(len(r), r[0], type_of(r[1]))
depth = 0
while type_of(r[1]) == "array" do
  r = r[1]
  depth = depth + 1
end
puts(depth > 1000, len(r), r[0], r[1], string_end_with?(r[2], "stack overflow"))
