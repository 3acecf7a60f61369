# A directory cannot be run as bytecode.
