puts("source text is no bytecode")
