def inner() return hidden end
def outer()
  hidden = 1
  return inner()
end
puts(pcall(outer))
hidden = "global"
puts(outer())
