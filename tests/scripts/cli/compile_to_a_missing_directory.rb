puts("fine")
