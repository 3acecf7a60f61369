n = 150000
# Five bodies under gravity, each a map with fixed names: float arithmetic on entries of maps.
import math


def make_body(x, y, z, vx, vy, vz, mass):
    return {"x": x, "y": y, "z": z, "vx": vx, "vy": vy, "vz": vz, "mass": mass}


def attract(a, b, dt):
    dx = a["x"] - b["x"]
    dy = a["y"] - b["y"]
    dz = a["z"] - b["z"]
    d2 = dx * dx + dy * dy + dz * dz
    mag = dt / (d2 * math.sqrt(d2))
    ma = a["mass"] * mag
    mb = b["mass"] * mag
    a["vx"] -= dx * mb
    a["vy"] -= dy * mb
    a["vz"] -= dz * mb
    b["vx"] += dx * ma
    b["vy"] += dy * ma
    b["vz"] += dz * ma


def move(body, dt):
    body["x"] += dt * body["vx"]
    body["y"] += dt * body["vy"]
    body["z"] += dt * body["vz"]


def advance(bodies, dt):
    for i in range(len(bodies)):
        for j in range(i + 1, len(bodies)):
            attract(bodies[i], bodies[j], dt)
    for body in bodies:
        move(body, dt)


def kinetic_energy(bodies):
    total = 0.0
    for b in bodies:
        total += 0.5 * b["mass"] * (b["vx"] * b["vx"] + b["vy"] * b["vy"] + b["vz"] * b["vz"])
    return total


def run(steps):
    bodies = [
        make_body(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 39.5),
        make_body(4.8, -1.2, -0.1, 0.6, 2.8, 0.0, 0.04),
        make_body(8.3, 4.1, -0.4, -1.0, 1.8, 0.0, 0.011),
        make_body(12.9, -15.1, -0.2, 1.1, 0.9, 0.1, 0.0017),
        make_body(15.4, -25.9, 0.2, 1.0, 0.6, -0.1, 0.002),
    ]
    for _ in range(steps):
        advance(bodies, 0.01)
    return math.floor(kinetic_energy(bodies) * 1000000)


print(run(n))
