# An error without a text gets a text of the program's own.
