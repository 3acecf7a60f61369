puts("before")
load("while")
