"""Small pictures in memory and the files that they become: PNG, TGA and BMP."""

import struct
import zlib


class Picture:
    """Pixels in rows from the top; each is (r, g, b, a) in 0..1."""

    def __init__(self, width, height, paint):
        """`paint(u, v)` gives 3 or 4 numbers for a point in 0..1, v downward."""
        self.width, self.height = width, height
        self.rows = []
        for y in range(height):
            row = []
            for x in range(width):
                colour = tuple(paint((x + 0.5) / width, (y + 0.5) / height))
                row.append(tuple(min(255, max(0, int(c * 255 + 0.5))) for c in colour))
            self.rows.append(row)
        self.channels = len(self.rows[0][0])

    def png(self):
        def chunk(kind, body):
            return (struct.pack(">I", len(body)) + kind + body +
                    struct.pack(">I", zlib.crc32(kind + body)))

        lines = bytearray()
        for row in self.rows:
            lines += self._filtered(row)
        header = struct.pack(">IIBBBBB", self.width, self.height, 8,
                             6 if self.channels == 4 else 2, 0, 0, 0)
        return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                chunk(b"IDAT", zlib.compress(bytes(lines), 9)) + chunk(b"IEND", b""))

    def _filtered(self, row):
        """A line as differences from the pixel on the left, which suits soft pictures."""
        line = bytearray([1])
        before = (0,) * self.channels
        for pixel in row:
            line += bytes((new - old) & 255 for new, old in zip(pixel, before))
            before = pixel
        return line

    def _reversed_channels(self, row):
        return b"".join(bytes((p[2], p[1], p[0]) + p[3:]) for p in row)

    def tga(self):
        """Plain true-colour picture with its first line on top."""
        descriptor = 0x20 | (8 if self.channels == 4 else 0)
        header = struct.pack("<BBBHHBHHHHBB", 0, 0, 2, 0, 0, 0, 0, 0, self.width, self.height,
                             8 * self.channels, descriptor)
        return header + b"".join(self._reversed_channels(row) for row in self.rows)

    def bmp(self):
        """24-bit picture, lines from the bottom, each filled up to four bytes."""
        gap = b"\0" * (-3 * self.width % 4)
        body = b"".join(self._reversed_channels([p[:3] for p in row]) + gap
                        for row in reversed(self.rows))
        info = struct.pack("<IiiHHIIiiII", 40, self.width, self.height, 1, 24, 0, len(body), 2835,
                           2835, 0, 0)
        return struct.pack("<2sIHHI", b"BM", 54 + len(body), 0, 0, 54) + info + body

    def file(self, name):
        return {"png": self.png, "tga": self.tga, "bmp": self.bmp}[name.rsplit(".", 1)[1]]()


def mix(a, b, t):
    t = min(1.0, max(0.0, t))
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def lattice(x, y, seed):
    """A number in 0..1 that depends on whole x, y and seed alone."""
    h = (x * 374761393 + y * 668265263 + seed * 2246822519) & 0xFFFFFFFF
    h = ((h ^ (h >> 13)) * 1274126177) & 0xFFFFFFFF
    return ((h ^ (h >> 16)) & 0xFFFF) / 65535


def noise(u, v, cells, seed, cells_v=None):
    """Soft noise in 0..1 that repeats seamlessly after u = 1 and v = 1."""
    cells_v = cells_v or cells
    x, y = u * cells, v * cells_v
    left, top = int(x // 1), int(y // 1)
    s, t = x - left, y - top
    s, t = s * s * (3 - 2 * s), t * t * (3 - 2 * t)

    def at(dx, dy):
        return lattice((left + dx) % cells, (top + dy) % cells_v, seed)

    upper = at(0, 0) + (at(1, 0) - at(0, 0)) * s
    lower = at(0, 1) + (at(1, 1) - at(0, 1)) * s
    return upper + (lower - upper) * t


def cloudy(u, v, cells, seed, octaves=4, cells_v=None):
    """Noise in several sizes, 0..1."""
    total, weight, cells_v = 0.0, 0.0, cells_v or cells
    for octave in range(octaves):
        share = 0.5 ** octave
        total += share * noise(u, v, cells << octave, seed + octave, cells_v << octave)
        weight += share
    return total / weight
