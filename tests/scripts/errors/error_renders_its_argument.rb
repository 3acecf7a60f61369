def fail(x) error(x) end
m = map_new()
m["k"] = [1, nil]
puts(pcall(fail, 42), pcall(fail, 1.50), pcall(fail, true), pcall(fail, nil), pcall(fail, ["a", 1]), pcall(fail, m), pcall(fail, len))
def bare() error() end
puts(pcall(bare))
def too_many() error(1, 2) end
puts(pcall(too_many))
