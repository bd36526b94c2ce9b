"""The pictures of harbour.qsa."""

import math

from .pictures import Picture, cloudy, lattice, mix, noise

HAZE = (0.93, 0.80, 0.70)
HORIZON = 0.40  # of the sky picture's height, where the camera of the scene sees the horizon
ZENITH = (0.30, 0.47, 0.70)


def sky_colour(height):
    """From the hazy horizon, 0, to the zenith, 1."""
    if height < 0.18:
        return mix(HAZE, (0.86, 0.78, 0.76), height / 0.18)
    return mix((0.86, 0.78, 0.76), ZENITH, ((height - 0.18) / 0.82) ** 0.8)


def sky(u, v):
    height = (HORIZON - v) / HORIZON if v < HORIZON else (v - HORIZON) / (1 - HORIZON) * 0.8
    colour = sky_colour(height)
    stretch = 0.25 + height
    cloud = cloudy(u * 1.5 + 0.1, height / stretch * 1.2, 3, 11, 5, 9)
    amount = max(0.0, cloud - 0.52) * 2.6 * min(1.0, height * 3)
    return mix(colour, (1.0, 0.90, 0.84), min(0.8, amount))


def sky_ball(u, v):
    """What mirrors show: the zenith in the middle, the horizon at 0.35 from it."""
    x, y = u - 0.5, v - 0.5
    height = 1 - min(1.0, math.hypot(x, y) / 0.35)
    sun = math.exp(-((x + 0.18) ** 2 + (y - 0.26) ** 2) * 60)
    cloud = max(0.0, cloudy(u, v, 6, 5) - 0.5) * 1.4
    return mix(mix(sky_colour(height), (1, 0.95, 0.9), cloud), (1.0, 0.88, 0.7), sun)


def water(u, v):
    wave = cloudy(u, v, 5, 21, 3, 9)
    fine = noise(u, v, 18, 3, 36)
    return mix((0.03, 0.13, 0.19), (0.10, 0.30, 0.36), 0.25 + (wave - 0.5) * 1.6 +
               (fine - 0.5) * 0.35)


def planks(u, v):
    board = int(v * 6)
    inside = v * 6 - board
    tone = 0.8 + 0.3 * lattice(board, 1, 7) + 0.25 * (cloudy(u, v, 2, 31, 3, 24) - 0.5)
    gap = 0.35 if inside < 0.1 else 1.0
    return tuple(c * tone * gap for c in (0.56, 0.42, 0.30))


def stone(u, v):
    row = int(v * 5)
    along = u * 3 + 0.5 * (row % 2)
    block = int(along) % 3
    joint = 0.55 if v * 5 - row < 0.12 or along - int(along) < 0.07 else 1.0
    tone = 0.75 + 0.3 * lattice(block, row, 3) + 0.3 * (cloudy(u, v, 4, 13) - 0.5)
    return tuple(c * tone * joint for c in (0.66, 0.61, 0.56))


def paving(u, v):
    tone = 0.8 + 0.35 * (cloudy(u, v, 4, 77) - 0.5)
    x, y = u * 4 + 0.5 * (int(v * 4) % 2), v * 4
    joint = 0.78 if x - int(x) < 0.08 or y - int(y) < 0.08 else 1.0
    return tuple(c * tone * joint for c in (0.68, 0.63, 0.57))


def roof(u, v):
    row = int(v * 6)
    along = u * 6 + 0.5 * (row % 2)
    tile = int(along) % 6
    across, down = along - int(along), v * 6 - row
    tone = 0.78 + 0.28 * lattice(tile, row, 9) - 0.35 * (down < 0.16) - 0.2 * (across < 0.1)
    return tuple(c * tone for c in (0.70, 0.30, 0.21))


def wall(paint, seed):
    """One window's width of a wall, one storey high."""
    def pixel(u, v):
        tone = 0.94 + 0.14 * (cloudy(u, v, 4, seed) - 0.5)
        plaster = tuple(c * tone for c in paint)
        x, y = abs(u - 0.5), v
        if x < 0.19 and 0.22 < y < 0.74:
            frame = x > 0.155 or y < 0.26 or y > 0.70 or x < 0.02 or abs(y - 0.42) < 0.02
            glass = mix((0.46, 0.56, 0.64), (0.16, 0.22, 0.29), (y - 0.26) * 2.2 + x)
            return (0.93, 0.90, 0.84) if frame else glass
        if x < 0.25 and 0.74 <= y < 0.79:
            return (0.62, 0.57, 0.51)
        if 0.21 < x < 0.33 and 0.22 < y < 0.74:
            slat = 0.8 + 0.2 * (int(y * 26) % 2)
            return tuple(c * slat for c in (0.24, 0.38, 0.36))
        return plaster
    return pixel


def light_beam(u, v):
    """Bright at the top (the lamp), gone at the bottom and at both sides."""
    across = max(0.0, 1 - abs(u - 0.5) * 2)
    return (1.0, 0.93, 0.72, 0.8 * across ** 1.5 * (1 - v) ** 1.3)


def glow(u, v):
    far = math.hypot(u - 0.5, v - 0.5) * 2
    return (1.0, 0.84, 0.52, max(0.0, 1 - far) ** 2)


def flag(u, v):
    gold, white, blue = (0.95, 0.74, 0.22), (0.95, 0.94, 0.90), (0.13, 0.30, 0.52)
    if math.hypot((u - 0.4) * 1.5, v - 0.5) < 0.22:
        return gold
    return white if abs(v - 0.5) < 0.09 or abs((u - 0.4) * 1.5) < 0.09 else blue


def crate(u, v):
    rim = min(u, v, 1 - u, 1 - v) < 0.1
    brace = abs(u - v) < 0.09
    grain = 0.85 + 0.3 * (cloudy(u, v, 2, 61, 3, 20) - 0.5)
    base = (0.62, 0.46, 0.28) if rim or brace else (0.74, 0.58, 0.37)
    board = 0.7 if int(v * 40) % 8 == 0 and not rim else 1.0
    return tuple(c * grain * board for c in base)


def pictures():
    return {
        "sky.png": Picture(320, 240, sky),
        "sky_ball.png": Picture(128, 128, sky_ball),
        "water.png": Picture(128, 128, water),
        "planks.png": Picture(64, 64, planks),
        "stone.png": Picture(64, 64, stone),
        "paving.bmp": Picture(64, 64, paving),
        "roof.tga": Picture(64, 64, roof),
        "wall_cream.png": Picture(64, 64, wall((0.90, 0.82, 0.66), 1)),
        "wall_rose.png": Picture(64, 64, wall((0.80, 0.54, 0.45), 2)),
        "wall_blue.png": Picture(64, 64, wall((0.55, 0.67, 0.74), 3)),
        "wall_ochre.png": Picture(64, 64, wall((0.84, 0.66, 0.38), 4)),
        "beam.png": Picture(64, 64, light_beam),
        "glow.png": Picture(32, 32, glow),
        "flag.png": Picture(96, 64, flag),
        "crate.png": Picture(64, 64, crate),
    }
