"""The shapes of harbour.qsa, each in its own space; lengths in metres."""

import math

from .pictures import cloudy
from .poses import PITCH, Pose, turn
from .shapes import Shape


def water(origin):
    """A net that is fine near the camera and coarse toward the horizon."""
    columns = [-260, -130, -70, -38, -20, -9, 0, 9, 20, 38, 70, 130, 260]
    rows = [-60, -24, -13, -4, 5, 15, 27, 43, 68, 110, 200, 420]
    shape = Shape()
    points = [[(x - origin[0], y - origin[1], -origin[2]) for x in columns] for y in rows]
    shape.sheet(points, 0, lambda r, c: (columns[c] / 22, rows[r] / 22))
    return shape


QUAY_TOP = 1.5


def quay():
    """Two arms: one along the right side, one across the back. Sides 0, top 1."""
    shape = Shape()
    shape.box((11, -34, 0), (46, 34, QUAY_TOP), 0, "xy", 0.25)
    shape.box((-15, 34, 0), (11, 64, QUAY_TOP), 0, "xy", 0.25)
    for low, high in (((11, -34, 0), (46, 34, QUAY_TOP)), ((-15, 34, 0), (46, 64, QUAY_TOP))):
        for x in range(int(low[0]), int(high[0]), 13):
            for y in range(int(low[1]), int(high[1]), 17):
                corner = (min(x + 13, high[0]), min(y + 17, high[1]), QUAY_TOP)
                shape.box((x, y, 0), corner, 1, "Z", 0.25)
    return shape


def kerb(length):
    shape = Shape()
    shape.box((-0.3, 0, 0), (0.3, length, 0.22), 0, "xXyYZ", 0.5)
    return shape


def pier_deck(length, width):
    shape = Shape()
    shape.box((0, -width / 2, -0.22), (length, width / 2, 0), 0, "xXyYzZ", 0.4)
    for side in (-1, 1):
        shape.beam((0, side * width * 0.4, -0.38), (length, side * width * 0.4, -0.38), 0.3)
    return shape


def post():
    shape = Shape()
    shape.cylinder(0.17, 0, 1.65, 7, 0, 0.15)
    return shape


def house(width, depth, storeys, door_at):
    """Stands on z = 0, front at y = 0, ridge along x. 0 walls, 1 roof, 2 plain wall, 3 door,
    4 chimney, 5 lit window."""
    shape = Shape()
    wall_height = storeys * 2.7
    bays, side_bays = round(width / 2.1), round(depth / 2.1)
    low, high = (-width / 2, 0, 0), (width / 2, depth, wall_height)
    (x0, y0, z0), (x1, y1, z1) = low, high
    front = ((0, 0), (bays, 0), (bays, storeys), (0, storeys))
    side = ((0, 0), (side_bays, 0), (side_bays, storeys), (0, storeys))
    shape.quad(((x0, y0, z0), (x1, y0, z0), (x1, y0, z1), (x0, y0, z1)), 0, front)
    shape.quad(((x1, y1, z0), (x0, y1, z0), (x0, y1, z1), (x1, y1, z1)), 0, front)
    shape.quad(((x1, y0, z0), (x1, y1, z0), (x1, y1, z1), (x1, y0, z1)), 0, side)
    shape.quad(((x0, y1, z0), (x0, y0, z0), (x0, y0, z1), (x0, y1, z1)), 0, side)
    ridge, eaves, out = depth * 0.42, 0.35, 0.3
    top = wall_height + ridge
    middle = depth / 2
    shape.flat_triangle(((x1, y0, z1), (x1, y1, z1), (x1, middle, top)), 2)
    shape.flat_triangle(((x0, y1, z1), (x0, y0, z1), (x0, middle, top)), 2)
    fall = eaves * ridge / middle
    tiles = ((0, 0), (width / 2, 0), (width / 2, depth / 3), (0, depth / 3))
    a, b = (x0 - out, y0 - eaves, z1 - fall), (x1 + out, y0 - eaves, z1 - fall)
    c, d = (x1 + out, middle, top + 0.05), (x0 - out, middle, top + 0.05)
    e, f = (x0 - out, y1 + eaves, z1 - fall), (x1 + out, y1 + eaves, z1 - fall)
    shape.quad((a, b, c, d), 1, tiles)
    shape.quad((f, e, d, c), 1, tiles)
    shape.quad((b, a, (a[0], a[1] + 0.3, a[2]), (b[0], b[1] + 0.3, b[2])), 4)
    shape.box((x0 + width * 0.2, middle + 0.5, top - 1.4), (x0 + width * 0.2 + 0.8, middle + 1.3,
                                                            top + 0.7), 4, "xXyYZ")
    step = width / bays
    door = x0 + (door_at + 0.5) * step
    shape.box((door - 0.85, -0.12, 0), (door + 0.85, 0.1, 2.5), 3, "xXyZ")
    lit = x0 + ((door_at + 2) % bays + 0.5) * step
    shape.quad([(lit + dx * step * 0.155, -0.02, 2.7 * (storeys - 1) + dz)
                for dx, dz in ((-1, 0.80), (1, 0.80), (1, 2.0), (-1, 2.0))], 5)
    return shape


def hull_rows(length, beam, depth, sections):
    """Half outlines from the keel up to the gunwale, from stern to bow."""
    rows = []
    for i in range(sections + 1):
        t = i / sections
        width = beam / 2 * (1 - max(0.0, (t - 0.35) / 0.65) ** 2.4) * (0.82 + 0.18 * min(1, t * 4))
        width = max(width, 0.02)
        sheer = 0.62 * depth + 0.5 * depth * max(0.0, t - 0.3) ** 1.5
        keel = -0.42 * depth + 0.7 * depth * max(0.0, t - 0.75) ** 1.4 * 2
        y = -length / 2 + length * (t + 0.06 * max(0.0, t - 0.8))
        rows.append([(width * s, y, keel + (sheer - keel) * h)
                     for s, h in ((0.08, 0.0), (0.62, 0.28), (0.93, 0.62), (1.0, 1.0))])
    return rows


def hull(length, beam, depth, inner_drop, sections):
    """Bow at +y, waterline at z = 0. 0 sides, 1 deck, 2 rail."""
    shape = Shape()
    rows = hull_rows(length, beam, depth, sections)
    port = [[(-x, y, z) for x, y, z in row] for row in rows]
    shape.sheet([list(reversed(row)) for row in rows])
    shape.sheet(port)
    stern, port_stern = rows[0], port[0]
    for i in range(3):
        shape.quad((port_stern[i], stern[i], stern[i + 1], port_stern[i + 1]))
    for i in range(sections):
        a, b = rows[i][3], rows[i + 1][3]
        inset = 0.86
        ai, bi = (a[0] * inset, a[1], a[2] - inner_drop), (b[0] * inset, b[1], b[2] - inner_drop)
        mirrored = [(-p[0], p[1], p[2]) for p in (ai, bi)]
        shape.quad((mirrored[0], ai, bi, mirrored[1]), 1, ((0, i / 4), (1, i / 4),
                                                           (1, i / 4 + 0.25), (0, i / 4 + 0.25)))
        shape.quad((ai, (a[0], a[1], a[2]), b, bi), 2)
        shape.quad(((-a[0], a[1], a[2]), mirrored[0], mirrored[1], (-b[0], b[1], b[2])), 2)
    return shape


def boat():
    """A small cutter with its sail furled. 0 hull, 1 deck, 2 rail, 3 cabin, 4 glass, 5 spars,
    6 canvas."""
    shape = hull(7.2, 2.5, 1.45, 0.12, 7)
    shape.box((-0.72, -1.7, 0.7), (0.72, 0.7, 1.72), 3, "xXyYZ")
    for side in (-1, 1):
        x = side * 0.735
        ys = (-1.4, 0.4) if side > 0 else (0.4, -1.4)
        shape.quad(((x, ys[0], 1.25), (x, ys[1], 1.25), (x, ys[1], 1.55), (x, ys[0], 1.55)), 4)
    shape.quad(((-0.5, -1.715, 1.2), (0.5, -1.715, 1.2), (0.5, -1.715, 1.55), (-0.5, -1.715, 1.55)),
               4)
    mast = Shape()
    mast.cylinder(0.09, 0.8, 8.6, 6, 5, 0.05)
    shape.take(mast, Pose((0, 0.95, 0)).matrix())
    boom = Shape()
    boom.turned_profile([(0.1, 0), (0.24, 0.5), (0.2, 2.4), (0.08, 3.4)], 7, 6)
    shape.take(boom, Pose((0, 0.8, 2.25), turn(PITCH, math.pi / 2 - 0.05)).matrix())
    for end in ((0, 3.55, 1.25), (0, -3.55, 0.95), (-1.2, 0.7, 0.95), (1.2, 0.7, 0.95)):
        shape.beam((0, 0.95, 8.4), end, 0.035, 5)
    return shape


def sails():
    """Main sail and jib of the same boat, to be seen from both sides. Bellies toward +x."""
    shape = Shape()
    def sheet(tack, clew, head, belly):
        rows = []
        for r in range(6):
            h = r / 5 * 0.985
            row = []
            for c in range(4):
                t = c / 3
                low = [tack[i] + (clew[i] - tack[i]) * t for i in range(3)]
                point = [low[i] + (head[i] - low[i]) * h for i in range(3)]
                point[0] += belly * math.sin(math.pi * t) * (1 - h) * (0.4 + h)
                row.append(tuple(point))
            rows.append(row)
        shape.sheet(rows)
    sheet((0, 0.85, 2.4), (0.5, -2.7, 2.35), (0, 0.9, 8.3), 0.9)
    sheet((0, 3.6, 1.5), (0.45, 1.15, 1.9), (0, 1.1, 7.6), 0.8)
    return shape


def dinghy():
    shape = hull(3.4, 1.4, 0.85, 0.35, 5)
    for y in (-0.9, 0.2):
        shape.box((-0.55, y, 0.32), (0.55, y + 0.28, 0.38), 2, "yYZ")
    return shape


def buoy():
    shape = Shape()
    shape.turned_profile([(0.0, -0.5), (0.55, -0.2), (0.6, 0.25), (0.28, 0.7), (0.16, 1.5),
                          (0.16, 1.7), (0.0, 1.9)], 9)
    return shape


def lighthouse(sides=12):
    """0 white and 5 red bands, 1 gallery and roof, 2 stone, 3 door and windows, 4 lantern."""
    shape = Shape()
    shape.turned_profile([(3.0, -0.4), (2.9, 1.2)], sides, 2)
    shape.disc(2.9, 1.2, sides, 2)
    bands = 5
    for band in range(bands):
        low, high = 1.2 + 2.56 * band, 1.2 + 2.56 * (band + 1)
        shape.turned_profile([(2.21 - 0.05 * low, low), (2.21 - 0.05 * high, high)], sides,
                             0 if band % 2 else 5)
    shape.cylinder(2.1, 14.0, 14.35, sides, 1, caps="zZ")
    shape.cylinder(1.15, 14.35, 16.3, 10, 4, caps="")
    shape.turned_profile([(1.55, 16.3), (0.95, 17.2), (0.12, 17.8), (0.1, 18.6), (0.0, 18.7)],
                         10, 1)
    shape.disc(1.55, 16.3, 10, 1, up=False)
    for angle, z, height in ((-1.9, 1.2, 2.0), (-1.75, 6.2, 1.0), (-1.3, 10.2, 1.0)):
        radius = 2.15 - 0.05 * (z - 1.2)
        x, y = math.cos(angle), math.sin(angle)
        across = (-y * 0.42, x * 0.42)
        corners = []
        for side, up in ((-1, 0), (1, 0), (1, 1), (-1, 1)):
            out = radius * 1.005 - 0.05 * height * up
            corners.append((x * out + across[0] * side, y * out + across[1] * side,
                            z + height * up))
        shape.quad(corners, 3)
    rails = 7
    for i in range(rails):
        angle, following = 2 * math.pi * i / rails, 2 * math.pi * (i + 1) / rails
        a, b = (2.0 * math.cos(angle), 2.0 * math.sin(angle)), (2.0 * math.cos(following),
                                                                2.0 * math.sin(following))
        shape.quad(((*a, 15.0), (*b, 15.0), (*b, 15.15), (*a, 15.15)), 1)
        shape.quad(((*b, 15.0), (*a, 15.0), (*a, 15.15), (*b, 15.15)), 1)
    return shape


def light_beam(length=46, width=4.2):
    """Two crossed sheets along +y; the lamp is at the origin."""
    shape = Shape()
    for a, b in (((1, 0, 0), (-1, 0, 0)), ((0, 0, 1), (0, 0, -1))):
        near = [tuple(v * 0.25 for v in p) for p in (a, b)]
        far = [(p[0] * width, length, p[2] * width) for p in (b, a)]
        shape.quad((*near, *far), 0, ((1, 1), (0, 1), (0, 0), (1, 0)))
    return shape


def glow_quad(size):
    """Faces -y."""
    shape = Shape()
    h = size / 2
    shape.quad(((-h, 0, -h), (h, 0, -h), (h, 0, h), (-h, 0, h)))
    return shape


def rock(radius, height, sides, seed):
    shape = Shape()
    rows = []
    for r, (share, z) in enumerate(((1.05, 0.0), (0.98, 0.35), (0.8, 0.75), (0.5, 0.95),
                                    (0.0, 1.0))):
        row = []
        for s in range(sides):
            a = 2 * math.pi * s / sides
            bump = 0.8 + 0.45 * cloudy(s / sides, r / 5, 5, seed, 2)
            row.append((radius * share * bump * math.cos(a), radius * share * bump * math.sin(a),
                        height * z * (bump if 0 < r < 4 else 1)))
        rows.append(row)
    shape.sheet(rows, closed=True)
    return shape


def hills(left, right, height, seed, steps=22):
    """A long ridge whose near slope is seen from -y; its foot lies below the water."""
    shape = Shape()
    rows = []
    for share, y in ((-0.1, 0), (0.35, 16), (0.8, 30), (1.0, 42)):
        row = []
        for i in range(steps + 1):
            t = i / steps
            tall = height * (0.15 + cloudy(t, 0.3, 3, seed, 4)) * math.sin(math.pi * t) ** 0.7
            row.append((left + (right - left) * t, y + 8 * cloudy(t, share, 7, seed + 5, 2),
                        max(-1.0, tall * share) if share > 0 else -2.0))
        rows.append(row)
    shape.sheet(rows)
    return shape


def crate(size=1.0):
    shape = Shape()
    h = size / 2
    shape.box((-h, -h, 0), (h, h, size), 0, "xXyYZ")
    return shape


def barrel():
    shape = Shape()
    shape.turned_profile([(0.32, 0), (0.4, 0.28), (0.4, 0.62), (0.32, 0.9)], 10, 0)
    shape.disc(0.32, 0.9, 10, 1)
    return shape


def lamp_post():
    """0 iron, 1 glass."""
    shape = Shape()
    shape.turned_profile([(0.22, 0), (0.2, 0.5), (0.08, 0.7), (0.06, 3.6)], 7)
    shape.turned_profile([(0.1, 3.6), (0.24, 4.1)], 6, 1)
    shape.turned_profile([(0.3, 4.1), (0.05, 4.4), (0.0, 4.5)], 6)
    return shape


def crane_base():
    """Lattice tower with a cabin. 0 frame, 1 cabin, 2 glass."""
    shape = Shape()
    shape.box((-1.3, -1.3, 0), (1.3, 1.3, 0.5), 0, "xXyYZ")
    for sx, sy in ((-1, -1), (1, -1), (1, 1), (-1, 1)):
        shape.beam((sx * 1.0, sy * 1.0, 0.5), (sx * 0.7, sy * 0.7, 7.5), 0.2)
    for k in range(2):
        z0, z1 = 0.6 + 3.4 * k, 4.0 + 3.4 * k
        w0, w1 = 1.0 - 0.043 * z0, 1.0 - 0.043 * z1
        shape.beam((-w0, -w0, z0), (w1, -w1, z1), 0.11)
        shape.beam((-w0, w0, z0), (-w1, -w1, z1), 0.11)
        shape.beam((w0, w0, z0), (w1, -w1, z1), 0.11)
    return shape


def crane_top():
    """Cabin, jib along +y and counterweight; turns about z."""
    shape = Shape()
    shape.box((-0.95, -1.0, 0), (0.95, 1.1, 1.9), 1)
    shape.quad(((0.6, 1.115, 0.7), (-0.6, 1.115, 0.7), (-0.6, 1.115, 1.6), (0.6, 1.115, 1.6)), 2)
    for x, a, b in ((-0.965, 0.9, -0.5), (0.965, -0.5, 0.9)):
        shape.quad(((x, a, 0.8), (x, b, 0.8), (x, b, 1.6), (x, a, 1.6)), 2)
    shape.box((-0.7, -3.2, 1.2), (0.7, -2.0, 2.4), 0)
    for side in (-1, 1):
        shape.beam((side * 0.4, -3.0, 2.0), (side * 0.25, 10.5, 4.4), 0.16)
    shape.beam((0, -2.6, 2.2), (0, 0, 5.2), 0.14)
    shape.beam((0, 0, 1.9), (0, 0, 5.2), 0.16)
    shape.beam((0, 0, 5.2), (0, 10.3, 5.1), 0.12)
    for k in range(4):
        y0, y1 = 0.6 + 2.4 * k, 1.8 + 2.4 * k
        for y, upper in ((y0, y1), (y1 + 1.2, y1)):
            low = 2.5 + y * 0.183
            shape.beam((0, y, low), (0, upper, 5.2 - upper * 0.01), 0.08)
    shape.beam((0, 10.4, 4.4), (0, 10.4, -1.6), 0.05, 2)
    return shape


def gull_body():
    shape = Shape()
    profile = Shape()
    profile.turned_profile([(0.0, -0.42), (0.06, -0.3), (0.13, 0.0), (0.09, 0.24), (0.0, 0.42)], 6)
    shape.take(profile, Pose((0, 0, 0), turn(PITCH, -math.pi / 2)).matrix())
    shape.flat_triangle(((-0.12, -0.6, 0.02), (0.12, -0.6, 0.02), (0, -0.3, 0.03)), 0)
    return shape


def gull_wing():
    """Right wing: root at the origin, tip at +x."""
    shape = Shape()
    rows = [[(0.05, -0.16, 0), (0.55, -0.14, 0.1), (1.15, -0.22, 0.02)],
            [(0.05, 0.14, 0), (0.55, 0.16, 0.1), (1.15, -0.12, 0.02)]]
    shape.sheet(rows, 0)
    return shape


def bench():
    shape = Shape()
    shape.box((-0.9, -0.25, 0.42), (0.9, 0.25, 0.5), 0, "xXyYzZ")
    shape.box((-0.9, 0.22, 0.5), (0.9, 0.28, 0.95), 0, "xXyYZ")
    for x in (-0.75, 0.7):
        shape.box((x, -0.2, 0), (x + 0.08, 0.2, 0.42), 0, "xXyY")
    return shape


FLAG_BONES = 4


def flag(length=2.7, height=1.7):
    """Cloth along +x that hangs from the origin; each column is shared by the two nearest bones."""
    columns, rows = 12, 3
    shape = Shape()
    net = [[(length * c / columns, 0.0, -height * r / rows) for c in range(columns + 1)]
           for r in range(rows + 1)]
    first = shape.sheet(net, 0, lambda r, c: (c / columns, 1 - r / rows))
    for r in range(rows + 1):
        for c in range(columns + 1):
            place = max(0.0, c / columns * FLAG_BONES - 0.5)
            bone = min(int(place), FLAG_BONES - 1)
            share = place - bone if bone < FLAG_BONES - 1 else 0.0
            share = 0.0 if share < 0.1 else 1.0 if share > 0.9 else share
            vertex = first + r * (columns + 1) + c
            for b, weight in ((bone, 1 - share), (bone + 1, share)):
                if weight >= 0.1:
                    shape.weights.setdefault(f"FlagBone{b}", []).append((vertex, weight))
    return shape


def bounds_box(low, high):
    shape = Shape()
    shape.box(low, high)
    return shape
