def reader() return no_such_name end
def caller() no_such_function(1) end
def bang() return gone! + 1 end
def target() no_such_array[0] = 1 end
puts(pcall(reader))
puts(pcall(caller))
puts(pcall(bang))
puts(pcall(target))
no_such_name = "now"
puts(pcall(reader))
