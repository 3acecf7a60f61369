# The mode word alone: the usage text.
