# The smallest program: version 1, and bytes after its end are ignored.
