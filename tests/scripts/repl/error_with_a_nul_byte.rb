# The message is written whole.
