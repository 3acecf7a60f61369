# There are no options beyond the mode words.
