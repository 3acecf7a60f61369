def f(x) if x then error("bad", 2) end return x end
puts(pcall(f, nil))
puts(pcall(f, 1))
