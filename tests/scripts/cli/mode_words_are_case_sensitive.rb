# Another spelling is taken for the path of a script.
