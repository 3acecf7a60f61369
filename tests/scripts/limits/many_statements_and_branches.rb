source = "total = 0" + string_rep(" total = total + 1", 50000) + " return total"
puts(load(source)())
source = "def pick(n) if n == -1 then return -1"
i = 0
while i < 3000 do
  source = source + " elsif n == " + i + " then return \"branch \" + " + i
  i = i + 1
end
load(source + " else return \"none\" end end")()
puts(pick(0), pick(2999), pick(3000), pick(-1))
source = ""
i = 0
while i < 5000 do
  source = source + "def many_" + i + "(x) return x + " + i + " end\n"
  i = i + 1
end
load(source)()
puts(many_0(1), many_4999(1))
