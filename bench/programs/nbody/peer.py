n = 300000
# Five bodies under gravity: float arithmetic on elements of arrays.
import math
from math import sqrt


def energy(x, y, z, vx, vy, vz, mass):
    e = 0.0
    for i in range(5):
        e += 0.5 * mass[i] * (vx[i] * vx[i] + vy[i] * vy[i] + vz[i] * vz[i])
        for j in range(i + 1, 5):
            dx = x[i] - x[j]
            dy = y[i] - y[j]
            dz = z[i] - z[j]
            e -= mass[i] * mass[j] / sqrt(dx * dx + dy * dy + dz * dz)
    return e


def advance(x, y, z, vx, vy, vz, mass, dt):
    for i in range(5):
        for j in range(i + 1, 5):
            dx = x[i] - x[j]
            dy = y[i] - y[j]
            dz = z[i] - z[j]
            d2 = dx * dx + dy * dy + dz * dz
            mag = dt / (d2 * sqrt(d2))
            mi = mass[i] * mag
            mj = mass[j] * mag
            vx[i] -= dx * mj
            vy[i] -= dy * mj
            vz[i] -= dz * mj
            vx[j] += dx * mi
            vy[j] += dy * mi
            vz[j] += dz * mi
    for i in range(5):
        x[i] += dt * vx[i]
        y[i] += dt * vy[i]
        z[i] += dt * vz[i]


def run(steps):
    x = [0.0, 4.8, 8.3, 12.9, 15.4]
    y = [0.0, -1.2, 4.1, -15.1, -25.9]
    z = [0.0, -0.1, -0.4, -0.2, 0.2]
    vx = [0.0, 0.6, -1.0, 1.1, 1.0]
    vy = [0.0, 2.8, 1.8, 0.9, 0.6]
    vz = [0.0, 0.0, 0.1, 0.0, -0.1]
    mass = [39.5, 0.04, 0.011, 0.0017, 0.002]
    for _ in range(steps):
        advance(x, y, z, vx, vy, vz, mass, 0.01)
    return math.floor(energy(x, y, z, vx, vy, vz, mass) * 1000000000)


print(run(n))
