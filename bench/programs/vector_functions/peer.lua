local n = 1700000
-- Small functions that take arrays and give back numbers or new arrays: a point turned around an axis.
local function dot(a, b)
  return a[1] * b[1] + a[2] * b[2] + a[3] * b[3]
end

local function cross(a, b)
  return { a[2] * b[3] - a[3] * b[2], a[3] * b[1] - a[1] * b[3], a[1] * b[2] - a[2] * b[1] }
end

local function add_scaled(a, b, factor)
  a[1] = a[1] + b[1] * factor
  a[2] = a[2] + b[2] * factor
  a[3] = a[3] + b[3] * factor
end

local function scaled(a, factor)
  return { a[1] * factor, a[2] * factor, a[3] * factor }
end

local function run(steps)
  local axis = { 0.48, 0.6, 0.64 }
  local point = { 1.0, 0.0, 0.0 }
  local sum = 0.0
  for _ = 1, steps do
    add_scaled(point, cross(axis, point), 0.01)
    point = scaled(point, 1.0 / math.sqrt(dot(point, point)))
    sum = sum + point[3]
  end
  return math.floor(sum * 1000)
end

print(run(n))
