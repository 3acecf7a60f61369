puts("found")
x = (
