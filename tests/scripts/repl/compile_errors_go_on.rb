# Each line must be complete; columns count within it.
