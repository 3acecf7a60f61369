# The first four bytes are compared exactly.
