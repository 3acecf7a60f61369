def show(source)
  r = pcall(load, source)
  if len(r) == 3 then puts(r[2]) else puts("compiled", r[1]()) end
end
show("99999999999999999999999999999999999999")
show("puts(1, 9223372036854775808)")
show("00000000000000000000009223372036854775807")
show("9223372036854775808.0")
show("x = 1" + string_rep("0", 309) + ".0")
show("x = 1" + string_rep("0", 308) + ".0")
show("x = 2" + string_rep("0", 308) + ".5")
# The literal is converted where it is parsed, so it is found before a later syntax error and after an earlier one.
show("x = 9223372036854775808 + (")
show(") + 9223372036854775808")
