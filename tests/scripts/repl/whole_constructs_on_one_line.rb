# Blocks fit on one line.
