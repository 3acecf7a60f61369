# Without an argument the message is "error".
error()
