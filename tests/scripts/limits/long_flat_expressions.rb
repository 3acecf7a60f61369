# What is long but not nested has no limit.
n = 50000
puts(load("return 1" + string_rep(" + 1", n))())
puts(load("return true" + string_rep(" and true", n))())
puts(load("return [0" + string_rep(", 0", n) + "]")() == array_new(n + 1, 0))
puts(len(load("return \"\"" + string_rep(" + \"x\"", n))()))
a = [0]
a[0] = a
puts(len(load("return a" + string_rep("[0]", n))()))
a[0] = nil
def f() return f end
puts(load("return f" + string_rep("()", n))() == f)
