# The path as given is the name in messages.
