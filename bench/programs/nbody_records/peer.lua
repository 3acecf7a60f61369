local n = 150000
-- Five bodies under gravity, each a map with fixed names: float arithmetic on entries of maps.
local sqrt = math.sqrt

local function make_body(x, y, z, vx, vy, vz, mass)
  return { x = x, y = y, z = z, vx = vx, vy = vy, vz = vz, mass = mass }
end

local function attract(a, b, dt)
  local dx = a.x - b.x
  local dy = a.y - b.y
  local dz = a.z - b.z
  local d2 = dx * dx + dy * dy + dz * dz
  local mag = dt / (d2 * sqrt(d2))
  local ma = a.mass * mag
  local mb = b.mass * mag
  a.vx = a.vx - dx * mb
  a.vy = a.vy - dy * mb
  a.vz = a.vz - dz * mb
  b.vx = b.vx + dx * ma
  b.vy = b.vy + dy * ma
  b.vz = b.vz + dz * ma
end

local function move(body, dt)
  body.x = body.x + dt * body.vx
  body.y = body.y + dt * body.vy
  body.z = body.z + dt * body.vz
end

local function advance(bodies, dt)
  for i = 1, #bodies do
    for j = i + 1, #bodies do
      attract(bodies[i], bodies[j], dt)
    end
  end
  for i = 1, #bodies do
    move(bodies[i], dt)
  end
end

local function kinetic_energy(bodies)
  local sum = 0.0
  for i = 1, #bodies do
    local b = bodies[i]
    sum = sum + 0.5 * b.mass * (b.vx * b.vx + b.vy * b.vy + b.vz * b.vz)
  end
  return sum
end

local function run(steps)
  local bodies = {
    make_body(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 39.5),
    make_body(4.8, -1.2, -0.1, 0.6, 2.8, 0.0, 0.04),
    make_body(8.3, 4.1, -0.4, -1.0, 1.8, 0.0, 0.011),
    make_body(12.9, -15.1, -0.2, 1.1, 0.9, 0.1, 0.0017),
    make_body(15.4, -25.9, 0.2, 1.0, 0.6, -0.1, 0.002),
  }
  for _ = 1, steps do
    advance(bodies, 0.01)
  end
  return math.floor(kinetic_energy(bodies) * 1000000)
end

print(run(n))
