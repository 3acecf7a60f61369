# Whether a read means the local or the global depends on the path that was taken.
x = "global"
def branch(c) if c then x = "local" end return x end
def both(c) if c then x = "yes" else x = "no" end return x end
def early(c) if c then x = "local" return x end return x end
def chain(n) if n == 1 then x = "one" elsif n == 2 then y = 2 elsif n == 3 then x = "three" end return x end
def loop(n) i = 0 while i < n do x = "turn " + i i = i + 1 end return x end
def head(n) i = 0 seen = "" while x != "stop" do seen = seen + x + ";" x = "turn " + i i = i + 1 if i > n then x = "stop" end end return seen end
def nested(a, b) if a then if b then x = "inner" end end return x end
def unreached() return x x = "local" end
def dead_loop() while false do x = "local" end return x end
def before() y = x x = y + "!" return [y, x] end
def twice(c) if c then x = "first" end y = x if not c then x = "second" end return [y, x] end
puts(branch(true), branch(false), both(true), both(false), early(true), early(false))
puts(chain(1), chain(2), chain(3), chain(4), loop(0), loop(1), loop(3))
puts(head(2), nested(true, true), nested(true, false), nested(false, true), unreached(), dead_loop())
puts(before(), twice(true), twice(false), x)
