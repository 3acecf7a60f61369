# Run without any word: the usage text.
puts("never")
