n = 150000
# Five bodies under gravity, each a map with fixed names: float arithmetic on entries of maps.
def make_body(x, y, z, vx, vy, vz, mass)
  { x: x, y: y, z: z, vx: vx, vy: vy, vz: vz, mass: mass }
end

def attract(a, b, dt)
  dx = a[:x] - b[:x]
  dy = a[:y] - b[:y]
  dz = a[:z] - b[:z]
  d2 = dx * dx + dy * dy + dz * dz
  mag = dt / (d2 * Math.sqrt(d2))
  ma = a[:mass] * mag
  mb = b[:mass] * mag
  a[:vx] -= dx * mb
  a[:vy] -= dy * mb
  a[:vz] -= dz * mb
  b[:vx] += dx * ma
  b[:vy] += dy * ma
  b[:vz] += dz * ma
end

def move(body, dt)
  body[:x] += dt * body[:vx]
  body[:y] += dt * body[:vy]
  body[:z] += dt * body[:vz]
end

def advance(bodies, dt)
  i = 0
  while i < bodies.length
    j = i + 1
    while j < bodies.length
      attract(bodies[i], bodies[j], dt)
      j += 1
    end
    i += 1
  end
  i = 0
  while i < bodies.length
    move(bodies[i], dt)
    i += 1
  end
end

def kinetic_energy(bodies)
  sum = 0.0
  i = 0
  while i < bodies.length
    b = bodies[i]
    sum += 0.5 * b[:mass] * (b[:vx] * b[:vx] + b[:vy] * b[:vy] + b[:vz] * b[:vz])
    i += 1
  end
  sum
end

def run(steps)
  bodies = [
    make_body(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 39.5),
    make_body(4.8, -1.2, -0.1, 0.6, 2.8, 0.0, 0.04),
    make_body(8.3, 4.1, -0.4, -1.0, 1.8, 0.0, 0.011),
    make_body(12.9, -15.1, -0.2, 1.1, 0.9, 0.1, 0.0017),
    make_body(15.4, -25.9, 0.2, 1.0, 0.6, -0.1, 0.002)
  ]
  step = 0
  while step < steps
    advance(bodies, 0.01)
    step += 1
  end
  (kinetic_energy(bodies) * 1000000).floor
end

puts run(n)
