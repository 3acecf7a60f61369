print("a", "b")
print("c")
