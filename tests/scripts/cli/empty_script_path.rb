# An empty word is a path that cannot be opened.
