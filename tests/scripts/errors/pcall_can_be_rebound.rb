builtin = pcall
def pcall(f) return "mine" end
puts(pcall(error))
puts(builtin(error, "x"))
pcall = builtin
puts(pcall(error, "y"))
