# Text of values of every kind, alone and inside containers.
def f() end
m = map_new()
m["k"] = 1
puts(nil, true, false, 0, -7, "text", [], map_new(), f, m)
puts([m, f], [1, "a", 2.5], [nil, true], [[], [[]]], [""], ["a, b", "]"])
n = map_new()
n["list"] = [1, m]
n["a b"] = "text"
n[""] = nil
puts(n)
puts([0.5, -0.0, 1.0], to_s(-0.0), "" + 2.0)
