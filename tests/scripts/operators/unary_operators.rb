puts(-5, - 5, --5, ---5, -(-5), -(2 + 3), 3 - -2, 3--2, 2 * -3, -2 * -3)
puts(!true, !nil, !!1, not false, not not nil, !not true, not !0)
puts(-2.5, -0.0, -true, -false)
