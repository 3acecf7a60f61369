café = 1
