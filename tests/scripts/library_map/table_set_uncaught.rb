# Like every built-in it does not say where it was called.
list = []
table_set(list, "a", 1)
