def f() no_such_function(error("argument")) end
puts(pcall(f))
# A value that is no function is noticed only after its arguments.
def g() x = 5 x(error("argument")) end
puts(pcall(g))
