# An empty line only gives a fresh prompt; blanks and comments run as empty chunks.
