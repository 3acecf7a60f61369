error("first\nsecond\n")
