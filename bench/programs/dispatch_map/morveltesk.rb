n = 11000000
# Functions looked up by name in a map and called.
def add(x, i)
  return x + i
end

def scale(x, i)
  return x * 3 + i
end

def mix(x, i)
  y = x - i
  if y < 0
    y = -y
  end
  return y
end

def run(count)
  actions = map_new()
  actions["add"] = add
  actions["scale"] = scale
  actions["mix"] = mix
  order = ["add", "scale", "mix", "add"]
  total = 0
  i = 0
  while i < count
    total = actions[order[i % 4]](total, i) % 100003
    i = i + 1
  end
  return total
end

puts(run(n))
