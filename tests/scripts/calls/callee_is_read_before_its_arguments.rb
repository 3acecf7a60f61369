# The function called is the one that the name had before the arguments ran.
def f(x) return "old " + x end
def replace() load("def f(x) return \"new \" + x end")() return "argument" end
puts(f(replace()))
puts(f("argument"))
