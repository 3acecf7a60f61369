# Functions of earlier lines report their own line, which is always 1.
