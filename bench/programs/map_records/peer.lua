local n = 90000
-- Records held as maps with a few fixed names, read and updated in place.
local function make(i)
  local p = {}
  p["x"] = i
  p["y"] = i * 2
  p["speed"] = i % 7 + 1
  p["name"] = "p" .. i
  return p
end

local function step(p)
  p["x"] = p["x"] + p["speed"]
  p["y"] = p["y"] - p["speed"]
  if p["x"] > 500 then
    p["x"] = p["x"] - 500
  end
end

local function run(rounds)
  local points = {}
  for i = 0, 99 do
    points[#points + 1] = make(i)
  end
  for _ = 1, rounds do
    for i = 1, 100 do
      step(points[i])
    end
  end
  local sum = 0
  for i = 1, 100 do
    local p = points[i]
    sum = sum + p["x"] * 3 + p["y"] + #p["name"]
  end
  return sum
end

print(run(n))
