print("no line break before the error")
error("failed")
