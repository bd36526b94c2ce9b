"""The pictures of the small scenes."""

import math

from .pictures import Picture, cloudy, mix, noise


def checker(u, v):
    """Four by four fields with a mark in the upper left one, so that turns and mirrors show."""
    if u < 0.25 and v < 0.25:
        return (0.95, 0.60, 0.15) if math.hypot(u - 0.125, v - 0.125) < 0.09 else (0.2, 0.2, 0.22)
    light = (int(u * 4) + int(v * 4)) % 2 == 0
    return (0.88, 0.88, 0.84) if light else (0.25, 0.42, 0.50)


def arrow(u, v):
    """An arrow that points up, on a frame."""
    if min(u, v, 1 - u, 1 - v) < 0.06:
        return (0.85, 0.82, 0.75)
    shaft = abs(u - 0.5) < 0.08 and 0.35 < v < 0.85
    head = 0.15 < v < 0.45 and abs(u - 0.5) < (v - 0.15) * 0.8
    return (0.90, 0.35, 0.20) if shaft or head else (0.16, 0.22, 0.30)


def marble(u, v):
    vein = abs(math.sin(math.pi * (2 * u + 3 * cloudy(u, v, 3, 8))))
    return mix((0.55, 0.52, 0.55), (0.93, 0.91, 0.88), vein ** 0.6)


def leaf(u, v):
    """A leaf on nothing: alpha is 0 around it."""
    half = 0.36 * math.sin(math.pi * min(1.0, max(0.0, (v - 0.05) / 0.85))) ** 0.8
    inside = abs(u - 0.5) < half
    vein = abs(u - 0.5) < 0.02 or abs((v * 7 + abs(u - 0.5) * 4) % 1.0 - 0.5) < 0.06
    green = (0.55, 0.66, 0.30) if vein else (0.22, 0.48, 0.20)
    return (*green, 1.0 if inside else 0.0)


def bumps(u, v):
    return (noise(u, v, 8, 2),) * 3


def chrome(u, v):
    """What a polished ball shows of a plain room."""
    height = 1 - min(1.0, math.hypot(u - 0.5, v - 0.5) / 0.36)
    lamp = 1.0 if abs(u - 0.4) < 0.05 and abs(v - 0.42) < 0.07 else 0.0
    return mix(mix((0.22, 0.20, 0.20), (0.62, 0.72, 0.85), height), (1, 1, 1), lamp)


def clock(hand):
    """One frame of a dial whose hand shows `hand` quarters."""
    angle = hand * math.pi / 2

    def pixel(u, v):
        x, y = u - 0.5, 0.5 - v
        far = math.hypot(x, y)
        if far > 0.46:
            return (0.30, 0.24, 0.20)
        along = x * math.sin(angle) + y * math.cos(angle)
        across = abs(x * math.cos(angle) - y * math.sin(angle))
        if (across < 0.05 and 0 < along < 0.36) or far < 0.07:
            return (0.75, 0.15, 0.12)
        return (0.93, 0.91, 0.84)
    return pixel


def pictures():
    return {
        "checker.png": Picture(64, 64, checker),
        "arrow.png": Picture(64, 64, arrow),
        "marble.bmp": Picture(64, 64, marble),
        "leaf.tga": Picture(32, 64, leaf),
        "bumps.png": Picture(32, 32, bumps),
        "chrome.png": Picture(64, 64, chrome),
    } | {f"clock{i}.png": Picture(32, 32, clock(i)) for i in range(4)}


FRAME_LIST = b"".join(b"clock%d.png\r\n" % i for i in range(4))
