# As soon as one side is a string, both sides are rendered.
puts("a" + "b", "n=" + 5, 5 + "=n", 1.5 + "x", "x" + 1.0, "a" + nil, nil + "x", "t" + true, false + "f")
puts("a" + [1, 2], [1, [2, "b"]] + "c", "m" + map_new(), "f" + puts, "" + "", "" + 7)
puts(type_of("" + 7), len("" + ""))
