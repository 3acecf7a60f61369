# The name needs no ending.
