# A function from another chunk keeps that chunk's constants and shares the globals.
load("def greet(name) s = \"hello \" return s + name + suffix end")()
load("suffix = \"?\"")()
puts(greet("a"))
suffix = "!"
puts(greet("b"))
f = load("return [1, \"constant\", 2.5]")
load("x = 1")()
puts(f(), f() == f())
