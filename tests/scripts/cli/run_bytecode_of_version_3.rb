# Versions 1 and 2 are known, no others, even when all that follows is well formed.
