# Infinities and NaN have one text each; the sign of a NaN is not shown.
infinity = 0 - math_log(0)
nan = math_sqrt(-1)
puts(to_s(infinity), to_s(-infinity))  #=> inf -inf
puts(to_s(nan), to_s(-nan), to_s(infinity - infinity))  #=> nan nan nan
puts([infinity, nan])  #=> [inf, nan]
