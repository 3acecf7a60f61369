# Nothing is printed for the value of a line.
