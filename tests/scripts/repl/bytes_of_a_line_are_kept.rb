# NUL bytes and bytes above 127 inside literals.
