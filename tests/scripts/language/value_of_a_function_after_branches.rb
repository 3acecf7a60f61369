# The value is that of whichever statement ran last, also out of loops and branches.
def a(c) 1 if c then return 9 end end
def b(n) "start" i = 0 while i < n do if i == 1 then "one" end i = i + 1 end end
def c(n) i = 0 while i < n do i = i + 1 if i == n then "turn " + i end end end
def d(x) if x == 1 then "one" elsif x == 2 then y = "two" elsif x == 3 then else "more" end end
def e(x) x if x then end while false do "never" end end
def g() 5 z = len("abc") end
def h() a(true) end
def j() "kept" def k() "not this" end end
def l(x) [x] m = [x] m[1] = x end
puts(a(false), a(true), b(0), b(1), b(2), c(0), c(3))
puts(d(1), d(2), d(3), d(4), e("x"), g(), h(), j(), l(7))
puts(pcall(b, 2), pcall(d, 3), pcall(g))
