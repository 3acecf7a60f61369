source = "def many() "
i = 0
while i < 1000 do
  source = source + "v" + i + " = " + i + " "
  i = i + 1
end
load(source + "return v0 + v499 + v999 end")()
puts(many())
