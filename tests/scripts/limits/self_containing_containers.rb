# A container inside itself has no finite text; saying so is an ordinary error.
a = [1]
array_push(a, a)
m = map_new()
m["self"] = m
def overflows?(f, x)
  r = pcall(f, x)
  return len(r) == 3 and string_end_with?(r[2], "stack overflow")
end
puts(overflows?(to_s, a), overflows?(to_s, m), overflows?(puts, a))
def joined(x) s = "text " + x return s end
puts(overflows?(joined, a), overflows?(joined, m))
def failed(x) error(x) end
puts(overflows?(failed, a))
b = [1]
array_push(b, b)
def same_as_b(x) r = x == b return r end
puts(overflows?(same_as_b, a))
puts("still running", len(a), a[1][1][0])
# Such rings live until they are opened.
table_clear(a)
table_clear(b)
table_clear(m)
