# Function values are equal when they come from the very same "def" having run once.
def f() return 1 end
g = f
puts(f == g, f == puts, puts == puts, f != g)
def f() return 1 end
puts(f == g, f == f)
made = []
i = 0
while i < 2 do
  def same() return 1 end
  array_push(made, same)
  i = i + 1
end
puts(made[0] == made[1], made[1] == same)
puts([f] == [f], load("1") == load("1"), f == nil)
h = load("1")
puts(h == h)
