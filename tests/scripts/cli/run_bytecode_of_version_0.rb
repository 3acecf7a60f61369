# Versions 1 and 2 are known, no others.
