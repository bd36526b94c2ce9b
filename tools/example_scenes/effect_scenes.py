"""The scenes of examples/effects/: each has materials that name an effect file beside it."""

import math

from .materials import material, picture_map
from .pictures import Picture, cloudy, lattice, mix, noise
from .poses import Pose, looking
from .shapes import Shape
from .small_scenes import ball, floor, stage


UNIT = 20


def turned(profile, sides=20):
    shape = Shape()
    shape.turned_profile(profile, sides)
    return shape


# outline.qsa: chess pieces, one of them chosen

PAWN = ((0.42, 0), (0.44, 0.12), (0.36, 0.18), (0.3, 0.3), (0.18, 0.5), (0.15, 0.78), (0.26, 0.84),
        (0.13, 0.9), (0.22, 0.98), (0.26, 1.1), (0.22, 1.23), (0.12, 1.32), (0, 1.35))
BISHOP = ((0.46, 0), (0.48, 0.14), (0.38, 0.22), (0.3, 0.36), (0.19, 0.65), (0.16, 1.1),
          (0.3, 1.18), (0.15, 1.25), (0.24, 1.36), (0.28, 1.52), (0.2, 1.74), (0.07, 1.88),
          (0.1, 1.95), (0.07, 2.02), (0, 2.05))
KING = ((0.52, 0), (0.54, 0.16), (0.42, 0.26), (0.32, 0.42), (0.22, 0.8), (0.18, 1.4), (0.34, 1.5),
        (0.18, 1.58), (0.26, 1.7), (0.36, 2.0), (0.3, 2.06), (0.1, 2.14), (0, 2.16))


def crowned(profile):
    shape = turned(profile)
    top = profile[-1][1]
    shape.box((-0.06, -0.06, top - 0.04), (0.06, 0.06, top + 0.36))
    shape.box((-0.17, -0.06, top + 0.12), (0.17, 0.06, top + 0.24))
    return shape


def inked(name, colour, width, ink):
    """All materials of a file share its effect, so each of them gives all of its values."""
    values = ",".join(f"{c:g}" for c in ink)
    return material(f"{name} shader='outline' fParam1='{width:g}' vParam1='{values}'", colour,
                    shine=(0.5, 0.35))


def outline():
    black, orange = (0.05, 0.04, 0.06), (1, 0.55, 0.1)
    ivory, ebony = (0.93, 0.87, 0.74), (0.34, 0.24, 0.22)
    scene = stage((0.6, -7.2, 4.4), (0, 0.1, 0.75), 100, [
        material("Board", diffuse=picture_map("board.png")),
        inked("Ivory", ivory, 1.5, black), inked("Ebony", ebony, 1.5, black),
        inked("Chosen", ivory, 4, orange)], background=(0.62, 0.70, 0.76), unit=UNIT,
        ambient=(0.42, 0.42, 0.46))
    field = 0.77
    edge = 4.2 * field
    square = Shape()
    square.quad(((-edge, -edge, 0), (edge, -edge, 0), (edge, edge, 0), (-edge, edge, 0)))
    scene.mesh("Board", square, 0, textured=True)
    shapes = {"Pawn": turned(PAWN), "Bishop": turned(BISHOP), "King": crowned(KING)}
    first = {}
    places = (("Pawn", 1, 1, 2), ("Pawn", 1, 2, 1), ("Bishop", 3, 4, 3), ("King", 1, 2, 4),
              ("King", 2, 5, 6), ("Bishop", 2, 1, 6), ("Pawn", 2, 6, 4), ("Pawn", 2, 5, 2))
    for i, (kind, number, column, line) in enumerate(places):
        name = f"{kind}{i + 1}"
        pose = Pose((field * (column - 3.5), field * (line - 3.5), 0))
        scene.mesh(name, first.get(kind, shapes[kind]), number, pose)
        first.setdefault(kind, name)
    return scene.result()


# glow.qsa: lanterns in the dark

def glowing(name, colour):
    return material(f"{name} shader='glow'", tuple(c * 0.3 for c in colour), glow=colour)


def glow():
    last = 120
    amber, mint, rose = (1, 0.72, 0.3), (0.35, 0.95, 0.7), (1, 0.4, 0.5)
    scene = stage((0, -9, 2.6), (0, 0, 1.35), last, [
        material("Ground", (0.35, 0.37, 0.45), shine=(0.5, 0.3)),
        material("Post", (0.3, 0.28, 0.3)),
        glowing("Amber", amber), glowing("Mint", mint), glowing("Rose", rose)],
        sun=False, unit=UNIT, ambient=(0.10, 0.10, 0.16), background=(0.02, 0.02, 0.05))
    scene.mesh("Ground", floor(7, 5, 20), 0)
    places = (("Amber", 2, amber, -2.6, 0.6, 1.7), ("Mint", 3, mint, 0.2, 2.2, 2.3),
              ("Rose", 4, rose, 2.4, -0.8, 1.3))
    for i, (name, number, colour, x, y, height) in enumerate(places):
        post = turned(((0.3, 0), (0.3, 0.1), (0.09, 0.18), (0.06, height - 0.3)), 10)
        scene.mesh(f"{name}Post", post, 1, Pose((x, y, 0)))
        scene.mesh(f"{name}Lamp", ball(0.38) if i == 0 else "AmberLamp", number,
                   Pose((x, y, height)))
        scene.light(f"{name}Light", "Omni", Pose((x, y - 0.1, height)), colour, 0.55)
    scene.light("Moon", "Directional", looking((5, -4, 9), (0, 0, 0)), (0.35, 0.4, 0.6), 0.3)
    return scene.result()


# ripple.qsa: a basin whose water shows what has been drawn behind it

def water_disc(radius, rings, sides):
    """Rings of waves that run out from a point beside the middle; flat at the rim."""
    shape = Shape()
    rows = []
    for r in range(rings + 1):
        far = radius * (rings - r) / rings
        row = []
        for s in range(sides):
            angle = 2 * math.pi * s / sides
            x, y = far * math.cos(angle), far * math.sin(angle)
            away = math.hypot(x - 0.35, y + 0.3)
            height = 0.05 * math.cos(7.5 * away) / (1 + 0.6 * away) * (1 - (far / radius) ** 4)
            row.append((x, y, height))
        rows.append(row)
    rows[-1] = [rows[-1][0]] * sides
    shape.sheet(rows, closed=True)
    return shape


def ripple():
    scene = stage((0, -7.6, 4.3), (0, 0.2, 0.2), 120, [
        material("Backdrop", glow=(1, 1, 1), diffuse=picture_map("evening.png")),
        material("Tiles", diffuse=picture_map("tiles.png")),
        material("Rim", (0.78, 0.74, 0.68), shine=(0.3, 0.3)),
        material("Red", (0.85, 0.25, 0.2), shine=(0.6, 0.4)),
        material("Gold", (0.9, 0.7, 0.25), shine=(0.6, 0.4)),
        material("Stone", (0.6, 0.62, 0.66)),
        material("Water shader='ripple' fParam1='6' vParam1='0.72,0.9,1'", (0.2, 0.4, 0.5),
                 shine=(0.8, 0.5))], unit=UNIT, ambient=(0.42, 0.42, 0.46))
    card = Shape()
    card.quad(((-16, 0, -6), (16, 0, -6), (16, 0, 10), (-16, 0, 10)))
    scene.mesh("Backdrop", card, 0, Pose((0, 9, 0)), textured=True)
    scene.mesh("Tiles", floor(6, 5), 1, textured=True)
    rim = turned(((2.75, 0), (2.75, 0.4), (2.7, 0.46), (2.5, 0.46), (2.45, 0.4), (2.45, 0)), 40)
    scene.mesh("Rim", rim, 2)
    scene.mesh("RedBall", ball(0.5), 3, Pose((-0.9, 0.5, 0.5)))
    scene.mesh("GoldBall", "RedBall", 4, Pose((1.25, -0.2, 0.35), scale=(0.7, 0.7, 0.7)))
    pillar = turned(((0.34, 0), (0.34, 0.15), (0.22, 0.25), (0.2, 1.9), (0.32, 2.0), (0.32, 2.15)),
                    14)
    for i, (x, y) in enumerate(((0.3, 1.5), (-3.6, 1.6), (3.6, 1.6))):
        scene.mesh(f"Pillar{i + 1}", pillar if i == 0 else "Pillar1", 5, Pose((x, y, 0)))
    scene.mesh("Water", water_disc(2.5, 22, 36), 6, Pose((0, 0, 0.32)))
    return scene.result()


# lava.qsa: a stream between rocks

def bend(y):
    return 0.9 * math.sin(0.75 * y)


def rocks():
    """The net follows the stream, so that its banks are smooth."""
    shape = Shape()
    columns, lines = 24, 24
    rows = []
    for r in range(lines + 1):
        y = -4 + 10 * r / lines
        row = []
        for c in range(columns + 1):
            side = -5.5 + 11 * c / columns
            bank = min(1.0, max(0.0, (abs(side) - 0.45) / 0.9))
            x = side + bend(y) * (1 - abs(side) / 5.5)
            rough = noise((x + 20) / 40, (y + 20) / 40, 36, 5) - 0.4
            height = -0.5 + bank * (0.75 + 0.9 * rough + 0.12 * abs(side))
            row.append((x, y, height + 0.1 * y))
        rows.append(row)
    shape.sheet(rows, uv=lambda r, c: (6 * c / columns, 6 * r / lines))
    return shape


def stream():
    """The picture's height runs along the stream."""
    shape = Shape()
    lines = 24
    rows = []
    for r in range(lines + 1):
        y = -4 + 10 * r / lines
        rows.append([(bend(y) + 1.15 * side, y, 0.1 * y - 0.15) for side in (-1, 0, 1)])
    shape.sheet(rows, uv=lambda r, c: (c / 2, 4 * r / lines))
    return shape


def lava():
    scene = stage((0.4, -6.6, 4.4), (0.1, 0, 0.1), 120, [
        material("Rocks", diffuse=picture_map("rock.png")),
        material("Lava shader='lava' fParam1='0.12' vParam1='1,0.5,0.2'",
                 diffuse=picture_map("lava.png"))],
        sun=False, unit=UNIT, background=(0.05, 0.03, 0.04), ambient=(0.20, 0.17, 0.19))
    scene.mesh("Rocks", rocks(), 0, textured=True)
    scene.mesh("Lava", stream(), 1, textured=True)
    scene.light("Dusk", "Directional", looking((-5, 3, 5), (0, 0, 0)), (0.5, 0.42, 0.5), 0.8)
    for i, y in enumerate((-2.6, 0.2, 3.0)):
        scene.light(f"Heat{i + 1}", "Omni", Pose((bend(y), y, 0.5 + 0.1 * y)), (1, 0.4, 0.12), 0.5)
    return scene.result()


# Pictures

def board(u, v):
    edge = min(u, v, 1 - u, 1 - v)
    rim = 0.2 / 8.4
    if edge < rim:
        return (0.30, 0.18, 0.12)
    u, v = ((x - rim) / (1 - 2 * rim) for x in (u, v))
    light = (int(u * 8) + int(v * 8)) % 2
    grain = 0.9 + 0.2 * cloudy(u, v, 2, 17, 3, 20)
    return tuple(c * grain for c in ((0.80, 0.66, 0.48) if light else (0.46, 0.30, 0.22)))


def tiles(u, v):
    x, y = u * 12, v * 10
    column, line = int(x), int(y)
    if min(x - column, y - line) < 0.06:
        return (0.52, 0.50, 0.50)
    tone = 0.88 + 0.14 * lattice(column, line, 4)
    colour = (0.86, 0.84, 0.78) if (column + line) % 2 else (0.36, 0.52, 0.62)
    return tuple(c * tone for c in colour)


def evening(u, v):
    low = mix((0.98, 0.78, 0.55), (0.55, 0.58, 0.75), (1 - v) * 1.6)
    cloud = max(0.0, cloudy(u, v, 4, 23, 4, 10) - 0.5) * 1.6
    return mix(low, (1.0, 0.88, 0.78), cloud)


def rock(u, v):
    tone = 0.25 + 0.5 * cloudy(u, v, 5, 41, 4)
    return mix((0.16, 0.13, 0.13), (0.62, 0.55, 0.52), tone)


def molten(u, v):
    """Dark crust with glowing cracks."""
    crack = abs(cloudy(u, v, 4, 61, 4) - 0.5) * 7
    heat = max(0.0, 1 - crack) ** 1.5 + 0.25 * cloudy(u, v, 3, 5, 3)
    return mix(mix((0.18, 0.05, 0.03), (0.95, 0.35, 0.05), heat * 1.6), (1, 0.9, 0.45),
               heat * 1.6 - 0.9)


def files():
    pictures = {
        "board.png": Picture(128, 128, board),
        "tiles.png": Picture(192, 160, tiles),
        "evening.png": Picture(64, 64, evening),
        "rock.png": Picture(64, 64, rock),
        "lava.png": Picture(64, 64, molten),
    }
    scenes = {"outline.qsa": outline(), "glow.qsa": glow(), "ripple.qsa": ripple(),
              "lava.qsa": lava()}
    return scenes | {name: picture.file(name) for name, picture in pictures.items()}
