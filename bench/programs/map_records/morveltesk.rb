n = 90000
# Records held as maps with a few fixed names, read and updated in place.
def make(i)
  p = map_new()
  p["x"] = i
  p["y"] = i * 2
  p["speed"] = i % 7 + 1
  p["name"] = "p" + i
  return p
end

def step(p)
  p["x"] = p["x"] + p["speed"]
  p["y"] = p["y"] - p["speed"]
  if p["x"] > 500
    p["x"] = p["x"] - 500
  end
end

def run(rounds)
  points = []
  i = 0
  while i < 100
    array_push(points, make(i))
    i = i + 1
  end
  round = 0
  while round < rounds
    i = 0
    while i < 100
      step(points[i])
      i = i + 1
    end
    round = round + 1
  end
  sum = 0
  i = 0
  while i < 100
    p = points[i]
    sum = sum + p["x"] * 3 + p["y"] + len(p["name"])
    i = i + 1
  end
  return sum
end

puts(run(n))
