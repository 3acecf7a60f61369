# An uncaught error with an empty message is reported by a text of the program's own.
error("")
