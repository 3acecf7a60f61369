puts("never")
