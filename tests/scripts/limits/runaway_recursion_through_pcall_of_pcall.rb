def forever() return pcall(pcall, forever) end
r = pcall(forever)
puts(len(r), r[0])
