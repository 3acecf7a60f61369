# Integers are compared by their nearest doubles: these two have the same one.
a = 9007199254740993
b = 9007199254740992
puts(a > b, a < b, a >= b, a <= b, a == b)
puts(9223372036854775807 > 9223372036854775806, 9007199254740994 > b)
