# The function is what counts, not the name it is called by.
fail = error
def f(message)
  fail(message)
  return 1
end
puts(pcall(f, "stop"))  #=> [true, false, stop]
puts(pcall(fail, "stop"))  #=> [false, stop]
