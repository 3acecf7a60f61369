n = 300000
# Five bodies under gravity: float arithmetic on elements of arrays.
def energy(x, y, z, vx, vy, vz, mass)
  e = 0.0
  i = 0
  while i < 5
    e = e + 0.5 * mass[i] * (vx[i] * vx[i] + vy[i] * vy[i] + vz[i] * vz[i])
    j = i + 1
    while j < 5
      dx = x[i] - x[j]
      dy = y[i] - y[j]
      dz = z[i] - z[j]
      e = e - mass[i] * mass[j] / math_sqrt(dx * dx + dy * dy + dz * dz)
      j = j + 1
    end
    i = i + 1
  end
  return e
end

def advance(x, y, z, vx, vy, vz, mass, dt)
  i = 0
  while i < 5
    j = i + 1
    while j < 5
      dx = x[i] - x[j]
      dy = y[i] - y[j]
      dz = z[i] - z[j]
      d2 = dx * dx + dy * dy + dz * dz
      mag = dt / (d2 * math_sqrt(d2))
      mi = mass[i] * mag
      mj = mass[j] * mag
      vx[i] = vx[i] - dx * mj
      vy[i] = vy[i] - dy * mj
      vz[i] = vz[i] - dz * mj
      vx[j] = vx[j] + dx * mi
      vy[j] = vy[j] + dy * mi
      vz[j] = vz[j] + dz * mi
      j = j + 1
    end
    i = i + 1
  end
  i = 0
  while i < 5
    x[i] = x[i] + dt * vx[i]
    y[i] = y[i] + dt * vy[i]
    z[i] = z[i] + dt * vz[i]
    i = i + 1
  end
end

def run(steps)
  x = [0.0, 4.8, 8.3, 12.9, 15.4]
  y = [0.0, -1.2, 4.1, -15.1, -25.9]
  z = [0.0, -0.1, -0.4, -0.2, 0.2]
  vx = [0.0, 0.6, -1.0, 1.1, 1.0]
  vy = [0.0, 2.8, 1.8, 0.9, 0.6]
  vz = [0.0, 0.0, 0.1, 0.0, -0.1]
  mass = [39.5, 0.04, 0.011, 0.0017, 0.002]
  step = 0
  while step < steps
    advance(x, y, z, vx, vy, vz, mass, 0.01)
    step = step + 1
  end
  return math_floor(energy(x, y, z, vx, vy, vz, mass) * 1000000000)
end

puts(run(n))
