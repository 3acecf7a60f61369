1 + 1
x = "value"
return [1, 2]
