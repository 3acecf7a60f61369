# The script is compiled before the output is opened.
x = "
