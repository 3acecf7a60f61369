n = 11000000
# Functions looked up by name in a map and called.
add = lambda do |x, i|
  x + i
end

scale = lambda do |x, i|
  x * 3 + i
end

mix = lambda do |x, i|
  y = x - i
  if y < 0
    y = -y
  end
  y
end

def run(count, actions)
  order = ["add", "scale", "mix", "add"]
  total = 0
  i = 0
  while i < count
    total = actions[order[i % 4]].call(total, i) % 100003
    i += 1
  end
  total
end

actions = {}
actions["add"] = add
actions["scale"] = scale
actions["mix"] = mix
puts run(n, actions)
