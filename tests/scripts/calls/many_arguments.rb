source = "def wide(" + "p0"
call = "0"
i = 1
while i < 300 do
  source = source + ", p" + i
  call = call + ", " + i
  i = i + 1
end
load(source + ") x = p0 + p299 return [x, p150] end")()
puts(load("wide(" + call + ")")())
puts(len(load("array_push([], " + call + ")")()))
puts(pcall(load("wide(" + call + ", 300)")))
