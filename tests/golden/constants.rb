# Every use of a literal or name is a constant of its own.
x = 1
x = 1
y = [nil, nil, true, false, 2.50, "x", 'it\'s', 100.0, 007]
