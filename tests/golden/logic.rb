# Both sides are always evaluated.
x = false and f()
y = a || b && !c
z = not a == b or true
