# The value of an earlier call or of the caller is not seen by the next function.
def five() 5 end
def nothing() end
five()
puts(nothing())
def both() five() nothing() end
puts(both())
