# A failing built-in does not say where it was called.
x = 1
puts(len(x))
