# A program needs an entry function.
