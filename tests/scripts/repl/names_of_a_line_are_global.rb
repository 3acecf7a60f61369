# Names assigned on a line are globals, in blocks and loaded chunks too.
