def outer()
  def made() return "made" end
  return 1
end
puts(pcall(load("made()")))
outer()
puts(made())
# A local of the same name is another variable.
def shadow()
  def made() return "made again" end
  made = "local"
  return made
end
puts(shadow(), made())
# As long as the local is not assigned, the name means the global function.
def late()
  def other() return "other" end
  r = other()
  other = 1
  return r
end
puts(late())
