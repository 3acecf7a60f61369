# "return" ends the line that it stands in.
