# The bytecode file named on the command line does not exist.
