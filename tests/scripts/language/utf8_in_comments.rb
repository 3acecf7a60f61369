# é ü 漢字 are fine in a comment
puts("漢字", len("漢字"))  # and ← here
