def none() x = 1 return x end
def one(a) x = a return x end
def three(a, b, c) x = a return x end
puts(pcall(none, 1))
puts(pcall(one))
puts(pcall(one, 1, 2))
puts(pcall(three, 1, 2))
puts(pcall(three, 1, 2, 3, 4))
alias = three
puts(pcall(alias))
puts(pcall(one, nil), pcall(none))
