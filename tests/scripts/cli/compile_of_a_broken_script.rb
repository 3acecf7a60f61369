puts("never")
x = )
