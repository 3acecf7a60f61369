# However far away the matching bracket stands, what follows it decides.
def try(count)
  list = "[" + string_rep("0, ", count) + "1]"
  a = load("a = [7] a[" + list + "[0]] = 8 return a")()
  b = load("b = [7] x = b[" + list + "[0]] return [x, b]")()
  c = load("c = [7] c[" + list + "[0]] d = 9 return [c, d]")()
  failed = pcall(load, "a[" + list + "[0]][0] = 8", "long")
  return [a, b, c, len(failed), string_end_with?(failed[2], ": expected expression")]
end
expected = [[8], [7, [7]], [[7], 9], 3, true]
count = 1
different = 0
while count < 1100 do
  if try(count) != expected then
    different = different + 1
    puts(count, try(count))
  end
  if count < 230 or count > 270 and count < 490 or count > 530 then count = count + 37 else count = count + 1 end
end
puts(try(5000), different)
