# Compiling has a message of its own for a script that cannot be opened.
