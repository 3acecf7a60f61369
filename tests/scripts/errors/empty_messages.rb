# A failure with an empty message is still a failure when a function raised it.
def silent() error("") end
r = pcall(silent)
puts(len(r), r[0], r[1], type_of(r[2]), len(r[2]))
def wrapper() return pcall(silent) end
puts(len(pcall(wrapper)[1]))
