shout = puts
shout("via another name")
old = len
len = 5
puts(len, old("abc"))
def to_s(x) return "mine" end
puts(to_s(1))
