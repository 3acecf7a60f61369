# At the top level every name is global, in functions too when they only read it.
limit = 10
def below?(n) return n < limit end
puts(below?(5), below?(15))
limit = 20
puts(below?(15))
if true then made_inside = 1 end
puts(made_inside)
