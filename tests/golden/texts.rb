puts("tab\tquote\"back\\slash", '\n', "café", "\q")
