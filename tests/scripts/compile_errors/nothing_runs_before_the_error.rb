# The whole script is compiled first: nothing above the error is printed.
puts("never")
x = (
puts("never")
