# A global is looked up at every call; a missing one fails until it exists.
def scaled(x) return x * factor end
puts(pcall(scaled, 2))
factor = 10
puts(scaled(2), pcall(scaled, 2))
factor = 0.5
puts(scaled(2))
factor = "x"
puts(pcall(scaled, 2))
def get_list() return shared end
shared = [1]
get_list()[0]
array_push(get_list(), 2)
puts(shared, get_list() == shared)
def get_function() return len end
puts(get_function()("abc"))
