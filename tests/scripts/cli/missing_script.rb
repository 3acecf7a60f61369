# The script named on the command line does not exist.
