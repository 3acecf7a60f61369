# The path is shown as it was given.
