def boom() error("boom") end
puts(pcall(pcall, boom))
puts(pcall(pcall, pcall, boom))
puts(pcall(pcall, error, "x"))
puts(pcall(pcall, error, ""))
puts(pcall(pcall, 5))
puts(pcall(pcall, len, "abc"))
p = pcall
puts(p(p, boom))
