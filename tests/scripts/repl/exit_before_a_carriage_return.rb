# With a carriage return the line is not the bare word.
