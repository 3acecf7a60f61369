# A directory cannot be opened as a script.
