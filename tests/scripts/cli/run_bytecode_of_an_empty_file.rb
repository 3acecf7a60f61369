# An empty file is too small for a header.
