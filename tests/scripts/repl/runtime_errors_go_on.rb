# The message stands alone, without the program's prefix, and the loop goes on with its globals.
