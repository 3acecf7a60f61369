def f return 5 end
def g
  return 6
end
def h; 7 end
puts(f(), g(), h())
# A "(" on the next line is a statement of the body.
def p
  (8)
end
puts(p())
def q (a) return a end
puts(q(9))
