n = 300000
# Five bodies under gravity: float arithmetic on elements of arrays.
def energy(x, y, z, vx, vy, vz, mass)
  e = 0.0
  i = 0
  while i < 5
    e += 0.5 * mass[i] * (vx[i] * vx[i] + vy[i] * vy[i] + vz[i] * vz[i])
    j = i + 1
    while j < 5
      dx = x[i] - x[j]
      dy = y[i] - y[j]
      dz = z[i] - z[j]
      e -= mass[i] * mass[j] / Math.sqrt(dx * dx + dy * dy + dz * dz)
      j += 1
    end
    i += 1
  end
  e
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
      mag = dt / (d2 * Math.sqrt(d2))
      mi = mass[i] * mag
      mj = mass[j] * mag
      vx[i] -= dx * mj
      vy[i] -= dy * mj
      vz[i] -= dz * mj
      vx[j] += dx * mi
      vy[j] += dy * mi
      vz[j] += dz * mi
      j += 1
    end
    i += 1
  end
  i = 0
  while i < 5
    x[i] += dt * vx[i]
    y[i] += dt * vy[i]
    z[i] += dt * vz[i]
    i += 1
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
    step += 1
  end
  (energy(x, y, z, vx, vy, vz, mass) * 1000000000).floor
end

puts run(n)
