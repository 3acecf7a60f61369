def named() end
alias = named
puts(named, alias, puts, table_set, error, pcall, load("1"), load("1", "chunk"))
puts([named, [len]], "f: " + named)
def holder() def inner() end return inner end
puts(holder())
def error(m) end
puts(error)
