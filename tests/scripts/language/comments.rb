# A comment runs from "#" to the end of its line.
puts("a") # after a statement
puts("# not a comment")   # inside a literal it is text
puts('#', "#{x}")
#puts("hidden")
#
##
puts("b")# without a blank in front
x = 1 # y = 2
puts(x)
