# A chunk shares the globals: it sees them, sets them, and its functions stay.
base = 10
load("def scaled(n) return n * base end")()
puts(scaled(4))  #=> 40
base = 2
puts(scaled(4))  #=> 8
load("base = base + 1")()
puts(base)  #=> 3
def inside
  hidden = 7
  return pcall(load("return hidden"))
end
puts(inside())  #=> [true, false, <load>:1: undefined variable or function 'hidden']
