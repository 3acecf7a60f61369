local n = 300000
-- Five bodies under gravity: float arithmetic on elements of arrays.
local sqrt = math.sqrt

local function energy(x, y, z, vx, vy, vz, mass)
  local e = 0.0
  for i = 1, 5 do
    e = e + 0.5 * mass[i] * (vx[i] * vx[i] + vy[i] * vy[i] + vz[i] * vz[i])
    for j = i + 1, 5 do
      local dx = x[i] - x[j]
      local dy = y[i] - y[j]
      local dz = z[i] - z[j]
      e = e - mass[i] * mass[j] / sqrt(dx * dx + dy * dy + dz * dz)
    end
  end
  return e
end

local function advance(x, y, z, vx, vy, vz, mass, dt)
  for i = 1, 5 do
    for j = i + 1, 5 do
      local dx = x[i] - x[j]
      local dy = y[i] - y[j]
      local dz = z[i] - z[j]
      local d2 = dx * dx + dy * dy + dz * dz
      local mag = dt / (d2 * sqrt(d2))
      local mi = mass[i] * mag
      local mj = mass[j] * mag
      vx[i] = vx[i] - dx * mj
      vy[i] = vy[i] - dy * mj
      vz[i] = vz[i] - dz * mj
      vx[j] = vx[j] + dx * mi
      vy[j] = vy[j] + dy * mi
      vz[j] = vz[j] + dz * mi
    end
  end
  for i = 1, 5 do
    x[i] = x[i] + dt * vx[i]
    y[i] = y[i] + dt * vy[i]
    z[i] = z[i] + dt * vz[i]
  end
end

local function run(steps)
  local x = { 0.0, 4.8, 8.3, 12.9, 15.4 }
  local y = { 0.0, -1.2, 4.1, -15.1, -25.9 }
  local z = { 0.0, -0.1, -0.4, -0.2, 0.2 }
  local vx = { 0.0, 0.6, -1.0, 1.1, 1.0 }
  local vy = { 0.0, 2.8, 1.8, 0.9, 0.6 }
  local vz = { 0.0, 0.0, 0.1, 0.0, -0.1 }
  local mass = { 39.5, 0.04, 0.011, 0.0017, 0.002 }
  for _ = 1, steps do
    advance(x, y, z, vx, vy, vz, mass, 0.01)
  end
  return math.floor(energy(x, y, z, vx, vy, vz, mass) * 1000000000)
end

print(run(n))
