"""Vectors, matrices (row vectors: a point stands on the left), rotations and poses of nodes."""

import math


def add(a, b):
    return tuple(x + y for x, y in zip(a, b))


def subtract(a, b):
    return tuple(x - y for x, y in zip(a, b))


def scaled(a, factor):
    return tuple(x * factor for x in a)


def length(a):
    return math.sqrt(sum(x * x for x in a))


def normalised(a):
    return scaled(a, 1 / length(a))


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def multiply(a, b):
    """The 4x4 matrix that does `a` first and then `b`."""
    return [[sum(a[r][k] * b[k][c] for k in range(4)) for c in range(4)] for r in range(4)]


def transform(point, matrix):
    x, y, z = point
    return tuple(x * matrix[0][c] + y * matrix[1][c] + z * matrix[2][c] + matrix[3][c]
                 for c in range(3))


def rigid_inverse(matrix):
    """Inverse of a matrix that only turns and moves."""
    rows = [[matrix[c][r] for c in range(3)] + [0.0] for r in range(3)]
    moved = [-sum(matrix[3][k] * matrix[c][k] for k in range(3)) for c in range(3)]
    return rows + [moved + [1.0]]


def turn(axis, angle):
    """Quaternion (x, y, z, w) that turns by `angle` radians about `axis`, right-handed."""
    unit = normalised(axis)
    sine = math.sin(angle / 2)
    return (unit[0] * sine, unit[1] * sine, unit[2] * sine, math.cos(angle / 2))


def then(first, second):
    """The turn that does `first` and then `second`, both in the axes of the parent."""
    ax, ay, az, aw = second
    bx, by, bz, bw = first
    return (aw * bx + ax * bw + ay * bz - az * by, aw * by - ax * bz + ay * bw + az * bx,
            aw * bz + ax * by - ay * bx + az * bw, aw * bw - ax * bx - ay * by - az * bz)


def back(quaternion):
    x, y, z, w = quaternion
    return (-x, -y, -z, w)


def axis_and_angle(quaternion):
    """Unit axis and angle in 0..pi of a turn."""
    x, y, z, w = quaternion if quaternion[3] >= 0 else tuple(-v for v in quaternion)
    sine = length((x, y, z))
    if sine < 1e-9:
        return (0.0, 0.0, 1.0), 0.0
    return (x / sine, y / sine, z / sine), 2 * math.atan2(sine, w)


def turn_of_rows(rows):
    """The turn whose matrix has these three unit rows."""
    (a, b, c), (d, e, f), (g, h, i) = rows
    w = math.sqrt(max(0.0, 1 + a + e + i)) / 2
    if w > 1e-3:
        return ((f - h) / (4 * w), (g - c) / (4 * w), (b - d) / (4 * w), w)
    x, y, z = (math.sqrt(max(0.0, 1 + s)) / 2 for s in (a - e - i, e - a - i, i - a - e))
    if x >= y and x >= z:
        return (x, (b + d) / (4 * x), (c + g) / (4 * x), w)
    if y >= z:
        return ((b + d) / (4 * y), y, (f + h) / (4 * y), w)
    return ((c + g) / (4 * z), (f + h) / (4 * z), z, w)


NO_TURN = (0.0, 0.0, 0.0, 1.0)
YAW, PITCH, ROLL = (0, 0, 1), (1, 0, 0), (0, 1, 0)


class Pose:
    """How a node stands in its parent: first scaled (and mirrored), then turned, then moved."""

    def __init__(self, position=(0, 0, 0), rotation=NO_TURN, scale=(1, 1, 1), mirror=(1, 1, 1)):
        self.position, self.rotation = tuple(position), rotation
        self.scale, self.mirror = tuple(scale), tuple(mirror)

    def matrix(self):
        x, y, z, w = self.rotation
        rows = [[1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)],
                [2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)],
                [2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)]]
        turned = [[v * s * m for v in row] + [0.0]
                  for row, s, m in zip(rows, self.scale, self.mirror)]
        return turned + [list(self.position) + [1.0]]


def pose_of(matrix):
    """The pose of a matrix that only turns and moves."""
    return Pose(matrix[3][:3], turn_of_rows([row[:3] for row in matrix[:3]]))


def looking(eye, at):
    """Pose whose -Z axis points from `eye` to `at` and whose Y axis leans upward."""
    behind = normalised(subtract(eye, at))
    right = normalised(cross((0, 0, 1), behind))
    return Pose(eye, turn_of_rows([right, cross(behind, right), behind]))
