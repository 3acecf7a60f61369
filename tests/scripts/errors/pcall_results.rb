def three() x = 3 return x end
def nothing() end
def pair() x = [1, 2] return x end
def boom() error("boom") end
def divide(a, b) c = a / b return c end
puts(pcall(three))
puts(pcall(nothing))
puts(pcall(pair))
puts(pcall(boom))
puts(pcall(divide, 6, 3))
puts(pcall(divide, 1, 0))
r = pcall(boom)
puts(len(r), type_of(r), type_of(r[0]), type_of(r[1]), type_of(r[2]), r[2] == "boom")
r = pcall(three)
puts(len(r), type_of(r[1]))
puts(pcall(three) == pcall(three))
