n = 1700000
# Small functions that take arrays and give back numbers or new arrays: a point turned around an axis.
import math


def dot(a, b):
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def add_scaled(a, b, factor):
    a[0] += b[0] * factor
    a[1] += b[1] * factor
    a[2] += b[2] * factor


def scaled(a, factor):
    return [a[0] * factor, a[1] * factor, a[2] * factor]


def run(steps):
    axis = [0.48, 0.6, 0.64]
    point = [1.0, 0.0, 0.0]
    total = 0.0
    for _ in range(steps):
        add_scaled(point, cross(axis, point), 0.01)
        point = scaled(point, 1.0 / math.sqrt(dot(point, point)))
        total += point[2]
    return math.floor(total * 1000)


print(run(n))
