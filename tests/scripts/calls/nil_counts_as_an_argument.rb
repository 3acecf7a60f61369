def f(a) x = a return x end
puts(f(nil))
puts(pcall(f))
puts(pcall(f, nil, nil))
