def equal(a, b) return a == b end
def not_equal(a, b) return a != b end
def less(a, b) return a < b end
def less_equal(a, b) return a <= b end
def greater(a, b) return a > b end
def greater_equal(a, b) return a >= b end
puts(equal(1, 1.0), equal(0, nil), equal([1, [2]], [1, [2]]), not_equal("a", "b"), not_equal(1, true))
puts(less(1, 2), less("B", "a"), less_equal(2, 2), greater("b", "a"), greater(9007199254740993, 9007199254740992), greater_equal(1, true))
def chained(a, b, c) return a < b == (b < c) end
puts(chained(1, 2, 3), chained(1, 2, 0))
