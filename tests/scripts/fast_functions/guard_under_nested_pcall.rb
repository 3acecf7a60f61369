def half(x) if x < 0 then error("negative") end return x / 2 end
puts(pcall(pcall, half, 3))
puts(pcall(pcall, half, -1))
puts(pcall(pcall, half))
puts(pcall(pcall, pcall, half, -1))
p = pcall
puts(p(half, -1))
puts([half][0](8), pcall([half][0], -1))
h = half
puts(pcall(h))
