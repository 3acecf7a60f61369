puts(pcall(pcall))
pcall()
