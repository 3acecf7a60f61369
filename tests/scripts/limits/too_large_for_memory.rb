# What can never fit is "out of memory", and the script goes on.
def overflows?(f)
  r = pcall(f)
  return len(r) == 3 and string_end_with?(r[2], "out of memory")
end
a = [1, 2]
def far_element() a[9223372036854775807] = 1 end
def far_but_representable() a[4611686018427387904] = 1 end
def far_table_set() table_set(a, 9223372036854775807, 1) end
def huge_array() array_new(9223372036854775807) end
def huge_string() string_rep("x", 9223372036854775807) end
puts(overflows?(far_element), overflows?(far_but_representable), overflows?(far_table_set))
puts(overflows?(huge_array), overflows?(huge_string))
puts(a)
