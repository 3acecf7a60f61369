# A word may hold blanks.
