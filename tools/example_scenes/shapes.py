"""Triangle meshes. Sharp edges have vertices of their own, so that no vertex is ever split."""

import math

from .poses import add, cross, normalised, scaled, subtract, transform


class Shape:
    """Points with texture coordinates (v upward) and triangles, counter-clockwise from outside."""

    def __init__(self):
        self.points, self.uvs, self.faces, self.weights = [], [], [], {}

    def vertex(self, point, uv=(0, 0)):
        self.points.append(tuple(point))
        self.uvs.append(tuple(uv))
        return len(self.points) - 1

    def triangle(self, a, b, c, material=0):
        self.faces.append((a, b, c, material))

    def quad(self, corners, material=0, uv=((0, 0), (1, 0), (1, 1), (0, 1))):
        """Flat four-cornered face with vertices of its own."""
        a, b, c, d = (self.vertex(p, t) for p, t in zip(corners, uv))
        self.triangle(a, b, c, material)
        self.triangle(a, c, d, material)

    def flat_triangle(self, corners, material=0, uv=((0, 0), (1, 0), (0.5, 1))):
        self.triangle(*(self.vertex(p, t) for p, t in zip(corners, uv)), material)

    def sheet(self, rows, material=0, uv=None, closed=False):
        """Smooth net of points; outside is where (along a row) x (to the next row) points.

        `closed` joins the last point of each row to the first.
        """
        width = len(rows[0])
        if uv is None:
            uv = lambda r, c: (c / (width - 1), r / (len(rows) - 1))
        first = len(self.points)
        for r, row in enumerate(rows):
            for c, point in enumerate(row):
                self.vertex(point, uv(r, c))
        for r in range(len(rows) - 1):
            for c in range(width if closed else width - 1):
                a = first + r * width + c
                b = first + r * width + (c + 1) % width
                self._net_triangle(a, b, b + width, material)
                self._net_triangle(a, b + width, a + width, material)
        return first

    def _net_triangle(self, a, b, c, material):
        """A net may come together in a point; what has no area there is left out."""
        if len({self.points[a], self.points[b], self.points[c]}) == 3:
            self.triangle(a, b, c, material)

    def box(self, low, high, material=0, sides="xXyYzZ", uv_per_unit=None):
        """Small letters name the low sides. Without `uv_per_unit` a side shows one picture."""
        (x0, y0, z0), (x1, y1, z1) = low, high
        table = {"x": ((x0, y1, z0), (x0, y0, z0), (x0, y0, z1), (x0, y1, z1), y1 - y0, z1 - z0),
                 "X": ((x1, y0, z0), (x1, y1, z0), (x1, y1, z1), (x1, y0, z1), y1 - y0, z1 - z0),
                 "y": ((x0, y0, z0), (x1, y0, z0), (x1, y0, z1), (x0, y0, z1), x1 - x0, z1 - z0),
                 "Y": ((x1, y1, z0), (x0, y1, z0), (x0, y1, z1), (x1, y1, z1), x1 - x0, z1 - z0),
                 "z": ((x0, y1, z0), (x1, y1, z0), (x1, y0, z0), (x0, y0, z0), x1 - x0, y1 - y0),
                 "Z": ((x0, y0, z1), (x1, y0, z1), (x1, y1, z1), (x0, y1, z1), x1 - x0, y1 - y0)}
        for side in sides:
            *corners, width, height = table[side]
            u = width * uv_per_unit if uv_per_unit else 1
            v = height * uv_per_unit if uv_per_unit else 1
            self.quad(corners, material, ((0, 0), (u, 0), (u, v), (0, v)))

    def turned_profile(self, profile, sides, material=0, uv_turns=0):
        """Smooth surface around Z from (radius, z) pairs that run upward on the outside.

        A picture goes around it `uv_turns` times and has a seam then; with 0 it only goes upward.
        """
        total = max(1e-9, sum(math.dist(a, b) for a, b in zip(profile, profile[1:])))
        rows, heights, done = [], [], 0.0
        for i, (radius, z) in enumerate(profile):
            done += math.dist(profile[i - 1], profile[i]) if i else 0.0
            heights.append(done / total)
            columns = sides + 1 if uv_turns else sides
            angles = [2 * math.pi * (s % sides) / sides for s in range(columns)]
            rows.append([(radius * math.cos(a), radius * math.sin(a), z) for a in angles])
        self.sheet(rows, material, lambda r, c: (c / sides * uv_turns, heights[r]),
                   closed=not uv_turns)

    def disc(self, radius, z, sides, material=0, up=True):
        centre = self.vertex((0, 0, z), (0.5, 0.5))
        ring = []
        for s in range(sides):
            a = 2 * math.pi * s / sides
            x, y = math.cos(a), math.sin(a)
            ring.append(self.vertex((radius * x, radius * y, z), (0.5 + x / 2, 0.5 + y / 2)))
        for s in range(sides):
            a, b = ring[s], ring[(s + 1) % sides]
            self.triangle(centre, *((a, b) if up else (b, a)), material)

    def cylinder(self, radius, low, high, sides, material=0, top_radius=None, caps="Z"):
        top_radius = radius if top_radius is None else top_radius
        self.turned_profile([(radius, low), (top_radius, high)], sides, material)
        if "Z" in caps:
            self.disc(top_radius, high, sides, material)
        if "z" in caps:
            self.disc(radius, low, sides, material, up=False)

    def ball(self, radius, sides, bands, material=0, uv_turns=0):
        steps = [math.pi * (b / bands - 0.5) for b in range(bands + 1)]
        profile = [(0.0 if b in (0, bands) else radius * math.cos(s), radius * math.sin(s))
                   for b, s in enumerate(steps)]
        self.turned_profile(profile, sides, material, uv_turns)

    def beam(self, start, end, thickness, material=0):
        """Square bar between two points, without ends and with soft edges."""
        along = normalised(subtract(end, start))
        side = normalised(cross(along, (0, 0, 1) if abs(along[2]) < 0.9 else (0, 1, 0)))
        lift = cross(side, along)
        half = thickness / 2
        ring = [add(scaled(side, x * half), scaled(lift, y * half))
                for x, y in ((-1, -1), (-1, 1), (1, 1), (1, -1))]
        self.sheet([[add(end, p) for p in reversed(ring)], [add(start, p) for p in reversed(ring)]],
                   material, closed=True)

    def take(self, other, matrix=None):
        """Adds another shape, moved by a matrix."""
        base = len(self.points)
        for point, uv in zip(other.points, other.uvs):
            self.vertex(transform(point, matrix) if matrix else point, uv)
        for a, b, c, material in other.faces:
            self.triangle(base + a, base + b, base + c, material)

    def bounds(self):
        return (tuple(min(p[i] for p in self.points) for i in range(3)),
                tuple(max(p[i] for p in self.points) for i in range(3)))
