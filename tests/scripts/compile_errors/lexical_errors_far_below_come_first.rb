# All of the text is read before the first statement counts, however long it is.
def show(source)
  r = pcall(load, source)
  if len(r) == 3 then puts(r[2]) else puts("compiled") end
end
lines = string_rep("x = 1\n", 3000)
show("end\n" + lines + "@")
show("x = (\n" + lines + "  y = \"abc")
show("x = 9223372036854775808\n" + lines + "a & b")
show("def f(\n" + lines + "a | b")
show("while x\n" + lines + "7.foo")
show("end\n" + lines + "# @")
show("if x\n" + lines)
