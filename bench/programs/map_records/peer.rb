n = 90000
# Records held as maps with a few fixed names, read and updated in place.
def make(i)
  p = {}
  p["x"] = i
  p["y"] = i * 2
  p["speed"] = i % 7 + 1
  p["name"] = "p#{i}"
  p
end

def step(p)
  p["x"] += p["speed"]
  p["y"] -= p["speed"]
  if p["x"] > 500
    p["x"] -= 500
  end
end

def run(rounds)
  points = []
  i = 0
  while i < 100
    points << make(i)
    i += 1
  end
  round = 0
  while round < rounds
    i = 0
    while i < 100
      step(points[i])
      i += 1
    end
    round += 1
  end
  sum = 0
  i = 0
  while i < 100
    p = points[i]
    sum += p["x"] * 3 + p["y"] + p["name"].length
    i += 1
  end
  sum
end

puts run(n)
