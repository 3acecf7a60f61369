# A directory cannot be compiled.
