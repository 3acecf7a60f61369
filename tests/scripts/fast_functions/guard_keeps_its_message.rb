def refuse(n) if n < 0 then error("negative") end return n end

raise = error
def error(message)
  puts(message)
  message = "changed"
  return message
end
puts(refuse(-1))
puts(refuse(-2))
error = raise
puts(pcall(refuse, -3))
