# What was written before an uncaught error still reaches standard output.
puts("first")
print("second")
error("stopped")
puts("never")
