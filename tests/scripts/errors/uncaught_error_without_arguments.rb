error()
