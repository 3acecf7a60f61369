puts([], [1], [1, "a", nil, 2.5, true], [[1, [2]], []], [1 + 1, -1, not nil])
def f(x) return [x, x] end
puts([f(1), f([2])])
a = [[], []]
a[0] = 1
puts(a, [f][0](3), [1, 2, 3][1], len([[[]]]))
i = 0
kept = []
while i < 2 do array_push(kept, []) i = i + 1 end
array_push(kept[0], "x")
puts(kept)
