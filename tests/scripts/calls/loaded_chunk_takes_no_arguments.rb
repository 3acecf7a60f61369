chunk = load("return 1")
puts(chunk(), pcall(chunk), pcall(chunk, 1))
