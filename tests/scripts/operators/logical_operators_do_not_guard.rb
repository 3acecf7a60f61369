# The right side runs even when the left side already decides, and so do its errors.
x = nil
def guarded() return x != nil and x[0] == 1 end
puts(pcall(guarded))
def either() return true or 1 / 0 end
puts(pcall(either))
