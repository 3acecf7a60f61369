# End of input ends the loop with success and prints nothing more, not even a line break.
