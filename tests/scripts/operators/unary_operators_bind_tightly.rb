# "not" and "!" bind tighter than any binary operator, and looser than calls and indexing.
a = [3, 4]
def f(x) return x end
puts(-a[1], !f(false), -f(2), -f(a)[0])
puts(not 1 == 2, (not 1) == 2, not (1 == 2))
puts(not 0 == 0, !1 == false)
puts(-2 + 5, -7 % 3, -2 * 3)
puts(not true and false, not (true and false), not nil or nil)
