nan = to_f("nan")
inf = to_f("inf")
puts(nan == nan, nan != nan, nan == 1, nan != 1, 1 == nan)
puts([nan] == [nan], [1] == [nan])
a = [nan]
puts(a == a, a != a)
puts(inf == inf, inf == -inf, inf == 1, 1 == inf, inf != 9223372036854775807)
