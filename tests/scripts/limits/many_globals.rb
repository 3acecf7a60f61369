# A program may have more globals than an operand of an instruction can name.
source = ["return [0"]
i = 0
while i < 33000 do
  array_push(source, ", g" + i)
  i = i + 1
end
array_push(source, "] ")
definitions = []
i = 0
while i < 33000 do
  array_push(definitions, "g" + i + " = " + i + "\n")
  i = i + 1
end
body = []
array_push(body, "def last() return g32999 end")
array_push(body, "def add(n) g32999 = g32999 + n return g32999 end")
array_push(body, "def missing() return g33000 end")
array_push(body, "def define() def g33001() return 'defined' end return g33001() end")
array_push(body, "s = ''")
array_push(body, "g32998 = 'a'")
array_push(body, "i = 0")
array_push(body, "while i < 100000 do g32998 = g32998 + 'b' i = i + 1 end")
array_push(body, "g32997 = map_new() g32997['k'] = [1]")
array_push(body, "g32996 = g32995 + g32996")
array_push(body, "g32995 = last")
array_push(body, "if g32994 > g32993 then puts(g32994 % 7 == g32993 % 7) end")
array_push(body, "puts(g32995(), add(1), g32999, len(g32998), g32997, g32996)")
array_push(body, "puts(pcall(missing), define())")
whole = load(array_join(definitions, "") + array_join(body, "\n"))
whole()
all = load(array_join(source, ""))
puts(len(all()), all()[33000], all()[5])
