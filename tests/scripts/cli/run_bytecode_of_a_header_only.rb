# After the header the program name is missing.
