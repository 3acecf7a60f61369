1 < 2 == true
a <= b != (c >= d)
"x" > "y"
