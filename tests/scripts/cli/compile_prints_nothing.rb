puts("not run while compiling")
error("not run either")
