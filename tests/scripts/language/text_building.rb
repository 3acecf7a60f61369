# A text that is built piece by piece changes in its variable or element alone, and only when the whole statement works.
base = "a text of more than fifteen bytes"

def last_of_loop(n)
  s = "0123456789abcdef"
  i = 0
  while i < n
    i = i + 1
    s = s + i
  end
end
puts(last_of_loop(3))

def kept_before_the_end(s)
  s = s + "!"
  t = s
  if len(s) < 5 then
    t = t + "?"
  end
end
puts(kept_before_the_end("0123456789abcdef"), kept_before_the_end("ab"))

# What another name holds stays.
held = base
base = base + ", longer"
puts(held, base)
list = [base]
list[0] = list[0] + "; " + len(list[0])
puts(base, list)
twin = list[0]
list[0] = list[0] + "."
twin[0] = "A"
puts(list, twin)

# Parts that fail leave everything as it was.
ring = []
array_push(ring, ring)
m = map_new()
m["s"] = base
a = [base]

def part() error("no part") end
def to_entry() m["s"] = m["s"] + "x" + part() end
def to_element() a[0] = a[0] + "x" + part() end
def to_undefined() a[0] = a[0] + "x" + nothing end
def to_ring() a[0] = a[0] + "x" + ring end
def ring_alone() a[0] = a[0] + ring end
def byte_of_nothing() t = a[0] t[2] = "" end
def byte_outside() t = a[0] t[999] = "x" end
puts(pcall(to_entry), pcall(to_element), pcall(to_undefined), pcall(byte_of_nothing), pcall(byte_outside))
r = pcall(to_ring)
puts(r[1], r[2])
r = pcall(ring_alone)
puts(r[1], r[2])
puts(m["s"] == base, a[0] == base)

chunk = load("base = base + 'x' + part() + 'y'")
puts(pcall(chunk), base)
chunk = load("base = base + 'x' + 1 + nothing")
puts(pcall(chunk), base)
chunk = load("base[0] = part()")
puts(pcall(chunk), base)

# A part that changes what is appended to: the text is that of before.
shout = load("base = base + '!' return len(base)")
base = "0123456789abcdef"
base = base + "-" + shout() + "-" + shout()
puts(base)
base = base + shout()
puts(base)
def swap() a[0] = "other" return "+" end
a[0] = "0123456789abcdef"
a[0] = a[0] + "-" + swap() + a[0]
puts(a)
a[0] = "0123456789abcdef"
a[0] = a[0] + swap()
puts(a)
k = 0
move = load("k = 1 return ','")
a = ["0123456789abcdef", "second"]
a[k] = a[k] + "-" + move() + a[k]
puts(a)
k = 0
a[k] = a[k] + move()
puts(a)

# The parts hold the text, or the container that holds it.
a[0] = a[0] + a[0] + "|" + a[0]
puts(a[0])
m = map_new()
m["s"] = "0123456789abcdef"
m["s"] = m["s"] + m
puts(m)
m["s"] = m["s"] + "/" + m
puts(m)

# Another element, another index, another container.
a = ["0123456789abcdef", "zero"]
a[1] = a[0] + "x" + "y"
puts(a)
b = a
b[0] = a[0] + "x" + "y"
puts(a)
a[1.5] = a[1] + "z"
puts(a)

# Texts passed on and replaced by the result.
def add(s, x) return s + x + ";" end
def keep(s, x) kept = s return s + x end
def build(n)
  s = "0123456789abcdef"
  t = s
  while n > 0
    n = n - 1
    s = add(s, n)
    s = keep(s, "k")
  end
  return [s, t]
end
puts(build(2))
def failing(s) return s + nothing end
def survives(s) s = pcall(failing, s) return s end
puts(survives("0123456789abcdef"))

# Bytes.
def bytes(s)
  t = s
  s[0] = "xyz"
  s[1] = 7
  s[2] = s
  s[true] = nil
  return [s, t]
end
puts(bytes("0123456789abcdef"))
key = "0123456789abcdef"
m = map_new()
m[key] = 1
key[0] = "x"
m[key] = 2
key = key + "y"
puts(m[key], m)
table_clear(ring)
