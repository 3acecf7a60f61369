# A long chain in one expression gives the same in every kind of function.
sum = "x" + string_rep(" + x", 999)
load("def fast(x) return " + sum + " end")()
load("def slow(x) y = " + sum + " return y end")()
load("def guarded(x) if " + sum + " < 0 then error(\"negative\") end return " + sum + " end")()
puts(fast(3), slow(3), guarded(3), pcall(guarded, -1))
