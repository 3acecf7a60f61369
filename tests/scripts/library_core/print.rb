# print writes its arguments with nothing between them and nothing after them.
print()
print("a", "b")
print(1, 2.5, nil, true)
print("", [1, 2], "\n")
print("no line feed at the end")
print("", type_of(print()))
