"""The scenes of examples/effects/ whose effects have shaders."""

import math

from .materials import material, picture_map
from .pictures import Picture, cloudy, lattice, mix, noise
from .poses import Pose, looking
from .shapes import Shape
from .small_scenes import add_bone_chain, ball, floor, share_among_bones, stage

UNIT = 20


# skin.qsa: weeds that sway, each with another number of weights

def skin():
    last = 120
    scene = stage((0, -8.2, 3.2), (0, 0, 1.55), last, [
        material("Sand", (0.78, 0.70, 0.52)),
        material("Weed shader='skin'", (0.30, 0.62, 0.38)),
        material("Coral shader='skin'", (0.86, 0.44, 0.40)),
        material("Rod shader='skin'", (0.55, 0.58, 0.80))],
        unit=UNIT, background=(0.10, 0.24, 0.32), ambient=(0.30, 0.34, 0.38))
    scene.light("Surface", "Directional", looking((5, -3, 6), (0, 0, 0)), (0.35, 0.55, 0.65), 0.6)
    scene.mesh("Sand", floor(6, 4, 12), 0)
    # name, place, bones, length of a bone, how far a bone pulls, radius below and above, swing
    table = (("Weed", -2.2, 6, 0.55, 1.3, 0.34, 0.05, 0.20),
             ("Coral", 0.0, 4, 0.7, 0.8, 0.30, 0.22, 0.24),
             ("Rod", 2.1, 3, 0.9, 0.6, 0.16, 0.12, 0.30))
    for number, (name, x, count, step, reach, low, high, swing) in enumerate(table):
        bones = add_bone_chain(scene, name + "Bone", (x, 0, 0), step, count, last, swing)
        shape, rings = Shape(), 3 * count
        shape.turned_profile([(low + (high - low) * r / rings, step * count * r / rings)
                              for r in range(rings + 1)], 9)
        shape.disc(high, step * count, 9)
        share_among_bones(shape, bones, step, reach)
        scene.mesh(name, shape, number + 1, Pose((x, 0, 0)), skin=(Pose((x, 0, 0)), bones))
    bounds = Shape()
    bounds.box((-5, -4, -0.5), (5, 4, 5))
    scene.mesh("Bounds", bounds)
    return scene.result()


# gloss.qsa: coarse meshes with round highlights

def gloss():
    scene = stage((0, -8, 3.6), (0, 0, 0.7), 100, [
        material("Table shader='gloss'", (0.36, 0.26, 0.20), shine=(0.5, 0.45)),
        material("Jade shader='gloss'", (0.20, 0.55, 0.38), shine=(0.9, 0.55)),
        material("Brass shader='gloss'", (0.75, 0.58, 0.22), shine=(0.9, 0.4)),
        material("Plum shader='gloss'", (0.42, 0.18, 0.40), shine=(0.7, 0.35))],
        sun=False, unit=UNIT, ambient=(0.22, 0.22, 0.26), background=(0.07, 0.07, 0.10))
    scene.mesh("Table", floor(4, 3), 0)
    coarse = Shape()
    coarse.ball(0.8, 8, 6)
    scene.mesh("Jade", coarse, 1, Pose((-2, 0.2, 0.8)))
    vase = Shape()
    vase.turned_profile(((0.35, 0), (0.7, 0.5), (0.75, 0.9), (0.45, 1.5), (0.28, 1.8),
                         (0.42, 2.1)), 9)
    scene.mesh("Brass", vase, 2, Pose((0.1, 0.7, 0)))
    cone = Shape()
    cone.turned_profile(((0.8, 0), (0.62, 0.5), (0.3, 1.3), (0, 1.6)), 8)
    scene.mesh("Plum", cone, 3, Pose((2.1, -0.1, 0)))
    scene.light("Warm", "Omni", Pose((-2.5, -3, 3.2)), (1, 0.82, 0.6), 0.8)
    scene.light("Cool", "Omni", Pose((3.2, -2, 2.6)), (0.5, 0.65, 1), 0.7)
    return scene.result()


# relief.qsa: walls and pillars of stones

def relief():
    scene = stage((-1.2, -7, 2.4), (0.2, 0, 1.5), 100, [
        material("Floor", (0.42, 0.40, 0.38)),
        material("Wall shader='relief' fParam1='1'", shine=(0.35, 0.35),
                 diffuse=picture_map("stones_colour.png")),
        material("Pillar shader='relief' fParam1='1.6'", shine=(0.5, 0.4),
                 diffuse=picture_map("stones_colour.png"))],
        unit=UNIT, ambient=(0.30, 0.31, 0.36), background=(0.50, 0.60, 0.70))
    scene.mesh("Floor", floor(6, 4), 0)
    wall = Shape()
    wall.quad(((-5, 2, 0), (4, 2, 0), (4, 2, 4.2), (-5, 2, 4.2)), 0,
              ((0, 0), (4.5, 0), (4.5, 2.1), (0, 2.1)))
    wall.quad(((4, 2, 0), (4, -2.5, 0), (4, -2.5, 4.2), (4, 2, 4.2)), 0,
              ((4.5, 0), (6.75, 0), (6.75, 2.1), (4.5, 2.1)))
    scene.mesh("Wall", wall, 1, textured=True)
    pillar = Shape()
    pillar.turned_profile(((0.62, 0), (0.62, 3.3)), 18, uv_turns=2)
    scene.mesh("PillarLeft", pillar, 2, Pose((-1.9, 0.4, 0)), textured=True)
    scene.mesh("PillarRight", "PillarLeft", 2, Pose((1.4, -0.2, 0)))
    return scene.result()


# toon.qsa: toys in flat tones

def inked(name, colour, width):
    return material(f"{name} shader='toon' fParam1='{width:g}' fParam2='0.05' fParam3='0.55' "
                    "vParam1='0.10,0.07,0.12'", colour)


def toon():
    scene = stage((0.3, -8, 3.4), (0, 0, 0.95), 100, [
        material("Sheet", (0.96, 0.94, 0.88)),
        inked("Red", (0.92, 0.30, 0.24), 0.8), inked("Yellow", (0.98, 0.80, 0.25), 0.8),
        inked("Blue", (0.28, 0.50, 0.90), 0.8), inked("Green", (0.40, 0.74, 0.36), 1.2)],
        unit=UNIT, ambient=(0.5, 0.5, 0.5), background=(0.93, 0.95, 0.98))
    scene.mesh("Sheet", floor(7, 5), 0)
    round_one = Shape()
    round_one.ball(0.75, 16, 11)
    scene.mesh("Ball", round_one, 1, Pose((-2.4, 0, 0.75)))
    ring = Shape()
    sides, tube = 22, 9
    rows = []
    for s in range(sides + 1):
        a = 2 * math.pi * (s % sides) / sides
        row = []
        for t in range(tube):
            b = 2 * math.pi * t / tube
            far = 0.75 + 0.28 * math.cos(b)
            row.append((far * math.cos(a), far * math.sin(a), 0.28 * math.sin(b)))
        rows.append(row[::-1])
    ring.sheet(rows, closed=True)
    scene.mesh("Ring", ring, 2, Pose((-0.5, -1.0, 0.28)))
    pear = Shape()
    pear.turned_profile(((0, 0), (0.5, 0.08), (0.78, 0.5), (0.7, 0.95), (0.4, 1.4), (0.34, 1.8),
                         (0.2, 2.05), (0, 2.1)), 16)
    scene.mesh("Pear", pear, 4, Pose((0.6, 0.9, 0)))
    spool = Shape()
    spool.turned_profile(((0, 0), (0.7, 0.02), (0.72, 0.2), (0.35, 0.45), (0.3, 0.8), (0.35, 1.15),
                          (0.72, 1.4), (0.7, 1.58), (0, 1.6)), 16)
    scene.mesh("Spool", spool, 3, Pose((2.5, -0.2, 0)))
    return scene.result()


# pond.qsa: a pond between stones

def pond():
    scene = stage((0, -8.5, 2.6), (0, 0, 0.1), 120, [
        material("Shore", (0.42, 0.46, 0.30)),
        material("Stone", (0.52, 0.52, 0.55), shine=(0.2, 0.3)),
        material("Water shader='pond' fParam1='0.8' fParam2='0.02' vParam1='0.02,0.11,0.14' "
                 "vParam2='0.30,0.48,0.80' vParam3='0.88,0.84,0.80'", (0.1, 0.3, 0.4))],
        unit=UNIT, ambient=(0.40, 0.40, 0.44), background=(0.80, 0.82, 0.86))
    banks = Shape()
    columns, lines = 18, 14
    rows = []
    for r in range(lines + 1):
        y = -6 + 13 * r / lines
        row = []
        for c in range(columns + 1):
            x = -9 + 18 * c / columns
            out = math.hypot(x / 6.5, (y - 0.3) / 4.6) - 1
            rough = noise((x + 20) / 40, (y + 20) / 40, 30, 7) - 0.5
            row.append((x, y, min(1.2, max(-0.9, 1.4 * out)) + 0.25 * rough))
        rows.append(row)
    banks.sheet(rows)
    scene.mesh("Shore", banks, 0)
    water = Shape()
    steps = 20
    water.sheet([[(-8 + 16 * c / steps, -5.2 + 11 * r / steps, 0) for c in range(steps + 1)]
                 for r in range(steps + 1)],
                uv=lambda r, c: (4 * c / steps, 3 * r / steps))
    scene.mesh("Water", water, 2, textured=True)
    places = ((-2.6, 0.8, 0.8), (-1.7, 1.4, 0.5), (2.3, -0.6, 0.65), (3.4, 1.9, 0.9))
    for i, (x, y, size) in enumerate(places):
        scene.mesh(f"Stone{i + 1}", ball(1.0) if i == 0 else "Stone1", 1,
                   Pose((x, y, 0.05), scale=(size, 0.8 * size, 0.7 * size)))
    return scene.result()


# Pictures

STONES = 6


def stone_at(u, v):
    """Row and number of the brick at a point, and how far the point is from its edge, in bricks."""
    line = int(v * STONES) % STONES
    across = u * STONES / 2 + (0.5 if line % 2 else 0.0)
    column = int(across) % (STONES // 2)
    x, y = across % 1, v * STONES % 1
    return line, column, min(2 * min(x, 1 - x), min(y, 1 - y))


def stone_height(u, v):
    u, v = u % 1, v % 1
    edge = stone_at(u, v)[2]
    round_edge = min(1.0, edge / 0.16)
    return 0.035 * (1 - (1 - round_edge) ** 2) + 0.012 * cloudy(u, v, 8, 71, 2)


def stones_colour(u, v):
    line, column, edge = stone_at(u, v)
    tone = 0.75 + 0.35 * lattice(column, line, 9)
    grain = 0.85 + 0.3 * cloudy(u, v, 12, 29, 3)
    colour = mix((0.62, 0.52, 0.44), (0.56, 0.56, 0.58), lattice(column, line, 11))
    if edge < 0.05:
        colour, tone = (0.40, 0.38, 0.36), 1.0
    return tuple(c * tone * grain for c in colour)


def normals_of(height, size):
    """Red: slope to the right, green: upward, blue: outward."""
    def paint(u, v):
        step = 1 / size
        right = (height(u + step, v) - height(u - step, v)) / (2 * step)
        up = (height(u, v - step) - height(u, v + step)) / (2 * step)
        length = math.sqrt(right * right + up * up + 1)
        return tuple(0.5 + 0.5 * c / length for c in (-right, -up, 1))
    return paint


def wave_height(u, v):
    return 0.05 * cloudy(u % 1, v % 1, 5, 83, 2)


def files():
    pictures = {
        "stones.png": Picture(128, 128, normals_of(stone_height, 128)),
        "stones_colour.png": Picture(128, 128, stones_colour),
        "waves.png": Picture(64, 64, normals_of(wave_height, 64)),
    }
    scenes = {"skin.qsa": skin(), "gloss.qsa": gloss(), "relief.qsa": relief(), "toon.qsa": toon(),
              "pond.qsa": pond()}
    return scenes | {name: picture.file(name) for name, picture in pictures.items()}
