x = 1
a = [1]
s = "abc"
def f()
  load("x = nil + 1")()
end
def g() a[0] = nil + 1 end
def h() load("s[9] = \"x\"")() end
def i() load("a[-1] = 5")() end
puts(pcall(f), pcall(g), pcall(h), pcall(i))
puts(x, a, s)
