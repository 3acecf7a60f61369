# An error that says nothing still ends the script, with a text of the program's own.
puts("before")
error("")
puts("after")
