error("a", "b")
