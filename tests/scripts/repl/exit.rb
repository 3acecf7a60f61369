# Each line is run on its own; "exit" ends the loop.
