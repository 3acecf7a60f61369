puts(1)
