"""The small scenes: each shows one side of the format."""

import math

from .materials import (colour_track, material, opacity_track, picture_map,
                        write_materials)
from .poses import PITCH, Pose, ROLL, YAW, looking, pose_of, rigid_inverse, then, turn
from .shapes import Shape
from .writer import (Scene, bezier_positions, bezier_scales, rotations, sampled_positions,
                     sampled_rotations, sampled_scales, tcb_rotations)


def box(low=(-0.5, -0.5, 0), high=(0.5, 0.5, 1), material_number=0):
    shape = Shape()
    shape.box(low, high, material_number)
    return shape


def floor(half_x, half_y, steps=1):
    shape = Shape()
    rows = [[(half_x * (2 * c / steps - 1), half_y * (2 * r / steps - 1), 0)
             for c in range(steps + 1)] for r in range(steps + 1)]
    shape.sheet(rows, 0, lambda r, c: (half_x * c / steps, half_y * r / steps))
    return shape


def ball(radius=0.5, uv_turns=0):
    shape = Shape()
    shape.ball(radius, 12, 8, uv_turns=uv_turns)
    return shape


def arrow_shape():
    """Points along +y with a fin on top: turns and mirrors are seen at once. 0 body, 1 fin."""
    shape = Shape()
    shape.box((-0.15, -0.6, 0), (0.15, 0.3, 0.2))
    tip = ((-0.4, 0.3), (0.4, 0.3), (0, 0.8))
    shape.flat_triangle([(x, y, 0.2) for x, y in tip])
    shape.flat_triangle([(x, y, 0) for x, y in (tip[1], tip[0], tip[2])])
    for a, b in ((0, 1), (1, 2), (2, 0)):
        shape.quad(((*tip[a], 0), (*tip[b], 0), (*tip[b], 0.2), (*tip[a], 0.2)))
    shape.box((0.15, -0.55, 0.05), (0.45, -0.25, 0.15), 1)
    return shape


def stage(eye, at, last_frame, materials, **settings):
    """A scene with its materials, a camera with a target and a sun."""
    scene = Scene(last_frame, **settings)
    write_materials(scene, materials)
    scene.helper("Aim", Pose(at), kind="TARGETOBJECT")
    scene.camera("Camera", looking(eye, at), 0.7, "Aim")
    if settings.get("sun", True):
        scene.light("Sun", "Directional", looking((-4, -6, 8), (0, 0, 0)), (1.0, 0.95, 0.85), 0.9)
    return scene


# skinned.qsa

def add_bone_chain(scene, prefix, foot, step, count, last_frame, swing):
    """A chain of bones that points upward and waves; gives (name, bind pose) of each."""
    bones = []
    for i in range(count):
        keys = [(frame, turn(ROLL, swing * math.sin(2 * math.pi * frame / last_frame + 0.7 * i)))
                for frame in range(0, last_frame + 1, last_frame // 8)]
        name = f"{prefix}{i + 1}"
        position = foot if i == 0 else (0, 0, step)
        scene.helper(name, Pose(position, keys[0][1]), f"{prefix}{i}" if i else None,
                     (tcb_rotations(keys),), kind="BONEOBJECT")
        bind = Pose((foot[0], foot[1], foot[2] + step * i)).matrix()
        bones.append((name, pose_of(rigid_inverse(bind))))
    return bones


def share_among_bones(shape, bones, step, reach):
    """Each vertex goes to the bones whose middles are nearer than `reach`, at most four."""
    for vertex, point in enumerate(shape.points):
        pulls = []
        for i, (name, _) in enumerate(bones):
            pull = 1 - abs(point[2] - step * (i + 0.5)) / reach
            if pull > 0:
                pulls.append((pull, name))
        if not pulls:
            pulls = [(1.0, bones[0][0] if point[2] < step else bones[-1][0])]
        while True:
            total = sum(p for p, _ in pulls)
            kept = [(p, n) for p, n in pulls if p / total >= 0.1]
            if len(kept) == len(pulls):
                break
            pulls = kept
        assert len(pulls) <= 4
        for pull, name in pulls:
            shape.weights.setdefault(name, []).append((vertex, pull / total))


def skinned():
    last = 120
    scene = stage((0, -8.5, 3.4), (0, 0, 1.7), last, [
        material("Floor", diffuse=picture_map("checker.png")),
        material("Tentacle", (0.35, 0.55, 0.40), shine=(0.6, 0.4)),
        material("Reed", (0.75, 0.62, 0.30)),
        material("Worm", (0.70, 0.40, 0.45), shine=(0.4, 0.3))])
    scene.mesh("Floor", floor(5, 4), 0, textured=True)
    table = (("Tentacle", -2.4, 6, 0.6, 1.4, 0.42, 0.06, 0.16),
             ("Worm", 0.0, 4, 0.8, 1.25, 0.35, 0.28, 0.22),
             ("Reed", 2.2, 3, 1.1, 0.8, 0.12, 0.08, 0.30))
    for number, (name, x, count, step, reach, low, high, swing) in enumerate(table):
        foot = (x, 0, 0)
        bones = add_bone_chain(scene, name + "Bone", foot, step, count, last, swing)
        shape, tall = Shape(), step * count
        rings = 4 * count
        shape.turned_profile([(low + (high - low) * r / rings, tall * r / rings)
                              for r in range(rings + 1)], 8)
        shape.disc(high, tall, 8)
        share_among_bones(shape, bones, step, reach)
        scene.mesh(name, shape, {"Tentacle": 1, "Worm": 3, "Reed": 2}[name], Pose(foot),
                   skin=(Pose(foot), bones))
    scene.mesh("Bounds", box((-5, -4, -0.5), (5, 4, 5)))
    return scene.result()


# materials.qsa

def plain_materials():
    red, blue = (0.9, 0.2, 0.2), (0.2, 0.3, 0.9)
    red_to_blue = [(0, red), (60, blue), (120, red)]
    return [
        material("Diffuse only", (0.80, 0.30, 0.20), ambient=(0, 0, 0)),
        material("Ambient only", (0, 0, 0), ambient=(0.4, 0.9, 0.5)),
        material("Polished", (0.20, 0.30, 0.60), shine=(1.0, 0.5)),
        material("Self lit", (0.1, 0.1, 0.1), glow=(0.9, 0.7, 0.2)),
        material("Half there", (0.2, 0.7, 0.8), transparency=0.5, blend="Filter"),
        material("Adds light", (0.6, 0.4, 0.1), transparency=0.3, blend="Additive"),
        material("Takes light", (0.5, 0.2, 0.5), transparency=0.3, blend="Subtractive"),
        material("Fades softly", (0.9, 0.9, 0.9), transparency=0.2,
                 animation=[opacity_track([(0, 0.8), (60, 0.15), (120, 0.8)])]),
        material("Fades evenly", (0.9, 0.8, 0.5), transparency=0.5,
                 animation=[opacity_track([(0, 0.5), (60, 1), (120, 0.5)], linear=True)]),
        material("Changes softly", (0.9, 0.2, 0.2), animation=[
            colour_track("Diffuse", red_to_blue), colour_track("Ambient", red_to_blue)]),
        material("Changes evenly", (0.2, 0.8, 0.3), shine=(0.8, 0.3), animation=[
            colour_track("Diffuse", [(0, (0.2, 0.8, 0.3)), (120, (0.9, 0.8, 0.1))], linear=True),
            colour_track("Specular", [(0, (0, 0, 0)), (120, (1, 1, 1))], linear=True)]),
        material("Pulses", (0.3, 0.3, 0.3), animation=[
            colour_track("SelfIllumColor", [(0, (0.2, 0, 0)), (60, (1.5, 0.4, 0.2)),
                                            (120, (0.2, 0, 0))])]),
    ]


def map_materials():
    turning = [("OffsetU", [(0, 0), (120, 0.5)]), ("OffsetV", [(0, 0), (120, 0.5)]),
               ("TileU", [(0, 1), (60, 2), (120, 1)]), ("TileV", [(0, 1), (60, 2), (120, 1)]),
               ("AngleW", [(0, 0), (120, 2 * math.pi)])]
    once = ("Clamp", "Clamp")
    return [
        material("Map", diffuse=picture_map("arrow.png")),
        material("Tiled", diffuse=picture_map("arrow.png", tiling=(3, 2))),
        material("Moved and turned", diffuse=picture_map("arrow.png", offset=(0.2, 0.1),
                                                         angle=(0, 0, 0.5))),
        material("Mirrored", diffuse=picture_map("arrow.png", tile=("Mirror", "Mirror"))),
        material("Clamped", diffuse=picture_map("arrow.png", tiling=(2, 2), tile=once)),
        material("Mirror and Tile", diffuse=picture_map("checker.png", tile=("Mirror", "Tile"))),
        material("Map in motion", diffuse=picture_map("arrow.png", animation=turning)),
        material("Frame list", diffuse=picture_map("clock.ifl", time=(0, 0.1, "loop"))),
        material("Frame list there and back", diffuse=picture_map("clock.ifl",
                                                                  time=(10, 0.2, "pingpong"))),
        material("Cut-out", two_sided=True, diffuse=picture_map("leaf.tga", tile=once)),
        material("Tinted glass", transparency=0.4, blend="Filter", two_sided=True,
                 diffuse=picture_map("marble.bmp")),
        material("Map and bumps", diffuse=picture_map("marble.bmp"),
                 bump=picture_map("bumps.png", amount=0.3)),
    ]


def mirror_materials():
    return [
        material("Chrome", reflect=picture_map("chrome.png")),
        material("Waxed", (0.5, 0.1, 0.1), reflect=picture_map("chrome.png", amount=0.4)),
        material("Waxed marble", diffuse=picture_map("marble.bmp"),
                 reflect=picture_map("chrome.png", amount=0.3)),
        material("All three maps", diffuse=picture_map("checker.png", time=(0, 1, "hold")),
                 reflect=picture_map("chrome.png", amount=0.25),
                 bump=picture_map("bumps.png")),
    ]


def dice_material():
    sides = [(0.85, 0.25, 0.2), (0.9, 0.6, 0.2), (0.9, 0.85, 0.3), (0.35, 0.7, 0.3),
             (0.25, 0.45, 0.8)]
    nested = material("Sixth", children=[material("Sixth, inner", (0.5, 0.3, 0.6))])
    return material("Six sides", children=[material(f"Side {i + 1}", c)
                                           for i, c in enumerate(sides)] + [nested])


def materials():
    plain, mapped, mirrors = plain_materials(), map_materials(), mirror_materials()
    table = ([material("Back wall", diffuse=picture_map("checker.png", tiling=(0.5, 0.5))),
              dice_material()] + plain + mapped + mirrors)
    scene = stage((0, -14.5, 5.2), (0, 0, 2.9), 120, table, ambient=(0.35, 0.35, 0.38))
    wall = Shape()
    wall.quad(((-6, 2, -1), (6, 2, -1), (6, 2, 8), (-6, 2, 8)), 0,
              ((0, 0), (6, 0), (6, 4.5), (0, 4.5)))
    scene.mesh("Wall", wall, 0, textured=True)
    number = 2

    def place(column, row):
        return Pose((-4.0 + 1.6 * column, 0, 6.0 - 1.5 * row))

    for i in range(len(plain)):
        scene.mesh(f"Plain{i + 1}", ball() if i == 0 else "Plain1", number,
                   place(i % 6, i // 6))
        number += 1
    for i in range(len(mapped)):
        card = Shape()
        card.quad(((-0.6, 0, -0.6), (0.6, 0, -0.6), (0.6, 0, 0.6), (-0.6, 0, 0.6)))
        scene.mesh(f"Card{i + 1}", card, number, place(i % 6, 2 + i // 6), textured=True)
        number += 1
    for i in range(len(mirrors)):
        scene.mesh(f"Mirror{i + 1}", ball(0.6, uv_turns=2), number, place(i, 4), textured=True)
        number += 1
    dice = Shape()
    for side, sign in enumerate("xXyYzZ"):
        dice.box((-0.5, -0.5, -0.5), (0.5, 0.5, 0.5), side, sign)
    turned = then(turn(YAW, 0.6), turn(PITCH, 0.5))
    scene.mesh("Dice", dice, 1, Pose(place(5, 4).position, turned))
    return scene.result()


# animation.qsa

def animation():
    first, last = 10, 130
    scene = stage((0, -11.5, 5.8), (0, 0, 0.6), last, [
        material("Floor", diffuse=picture_map("checker.png")),
        material("Arrow", children=[material("Body", (0.85, 0.55, 0.2)),
                                    material("Fin", (0.25, 0.45, 0.7))])],
        first_frame=first, background=(0.45, 0.55, 0.65))
    scene.mesh("Floor", floor(7, 4), 0, textured=True)

    def frames(*values):
        step = (last - first) // (len(values) - 1)
        return [(first + step * i, value) for i, value in enumerate(values)]

    half = math.pi / 2
    spins = frames(*(turn(YAW, half * i) for i in range(5)))
    tumbles = frames(*(turn(PITCH, half * i) for i in range(5)))
    leans = frames(turn(ROLL, -0.6), turn(ROLL, 0.6), turn(ROLL, -0.6))
    sizes = frames((1, 1, 1), (1.6, 0.6, 1.2), (1, 1, 1))

    def hop(x):
        return frames((x, 0, 0.1), (x, 1.2, 1.4), (x, 0, 0.1), (x, -1.2, 1.4), (x, 0, 0.1))

    rows = (("SmoothPath", bezier_positions(hop(-5.4), closed=True)),
            ("StraightPath", sampled_positions(hop(-4.15))),
            ("EvenTurn", rotations(spins)), ("SampledTurn", sampled_rotations(tumbles)),
            ("SoftTurn", tcb_rotations(leans)),
            ("EasedTurn", tcb_rotations(leans, (0.6, 0.4, 0.2, 0.5, 0.5))),
            ("SmoothScale", bezier_scales(sizes)), ("StraightScale", sampled_scales(sizes)))
    for i, (name, track) in enumerate(rows):
        scene.mesh(name, arrow_shape() if i == 0 else rows[0][0], 1,
                   Pose((-5.4 + 1.25 * i, 0, 0.1)), tracks=(track,))
    scene.helper("Carousel", Pose((5, 0, 0.3)), tracks=(rotations(spins),))
    for i in range(3):
        angle = 2 * math.pi * i / 3
        pose = Pose((0.9 * math.cos(angle), 0.9 * math.sin(angle), 0.3), turn(YAW, angle))
        scene.mesh(f"Rider{i + 1}", rows[0][0], 1, pose, parent="Carousel",
                   tracks=(sampled_positions(frames(pose.position,
                                                    (*pose.position[:2], 1.2), pose.position)),))
    scene.mesh("AroundItsEnd", rows[0][0], 1, Pose((0, -2.6, 0.1)), tracks=(rotations(spins),),
               pivot=Pose((0, 0.9, 0)))
    path = frames((-8, -9, 5), (0, -12, 6), (8, -9, 5), (0, -12, 6), (-8, -9, 5))
    scene.camera("Dolly", looking(path[0][1], (0, 0, 0.6)), 0.8, "Aim",
                 tracks=(bezier_positions(path, closed=True),))
    return scene.result()


# lights.qsa

def lights():
    last = 120
    scene = stage((0, -9.5, 4.5), (0, 0.5, 0.8), last, [
        material("Floor", (0.75, 0.75, 0.75), shine=(0.5, 0.3)),
        material("Pillar", (0.8, 0.75, 0.7), shine=(0.4, 0.3)),
        material("Lamp", glow=(1, 1, 0.8))],
        sun=False, ambient=(0.06, 0.06, 0.09), background=(0.02, 0.02, 0.04))
    scene.mesh("Floor", floor(7, 5, 22), 0)
    pillar = Shape()
    pillar.cylinder(0.35, 0, 1.6, 12, 0, 0.3)
    for i in range(5):
        scene.mesh(f"Pillar{i + 1}", pillar if i == 0 else "Pillar1", 1, Pose((-4 + 2 * i, 1.5, 0)))
    spin = [(frame, turn(YAW, math.pi / 2 * frame / 30)) for frame in range(0, last + 1, 30)]
    scene.helper("Turret", Pose((0, -1, 3)), tracks=(rotations(spin),))
    down = turn(PITCH, math.radians(38))
    scene.light("SpotInTurret", "TargetSpot", Pose(rotation=down), (1, 0.9, 0.5), 1.0,
                parent="Turret", cone=(20, 34))
    scene.light("SpotWithTarget", "Target", looking((-5, -3, 4), (-4, 1, 0)), (0.3, 0.5, 1), 1.2,
                cone=(26, 28), target_distance=5)
    flight = [(frame, (3.5 * math.cos(2 * math.pi * frame / last),
                       1.5 * math.sin(2 * math.pi * frame / last), 1.2))
              for frame in range(0, last + 1, 15)]
    scene.light("Firefly", "Omni", Pose(flight[0][1]), (0.2, 0.6, 0.25), 0.7,
                tracks=(bezier_positions(flight, closed=True),))
    scene.mesh("FireflyBody", ball(0.1), 2, parent="Firefly")
    scene.light("Moon", "Directional", looking((5, -4, 9), (0, 0, 0)), (0.35, 0.4, 0.6), 0.35)
    scene.light("SwitchedOff", "Omni", Pose((0, 0, 3)), (1, 0, 0), 2, on=False)
    return scene.result()


# groups.qsa

def groups():
    scene = stage((0, -8, 4.2), (0, 0, 0.4), 100, [
        material("Arrow", children=[material("Body", (0.75, 0.35, 0.3)),
                                    material("Fin", (0.9, 0.8, 0.4))]),
        material("Other arrow", children=[material("Other body", (0.3, 0.5, 0.7)),
                                          material("Other fin", (0.85, 0.85, 0.85))]),
        material("Floor", (0.45, 0.5, 0.42))], background=(0.6, 0.66, 0.7))
    scene.mesh("Floor", floor(5, 3.5), 2)
    scene.mesh("AheadOfItsSource", "Arrow", 1, Pose((-3.2, 1.4, 0.2)))
    with scene.block('GROUP "Row"'):
        scene.mesh("Arrow", arrow_shape(), 0, Pose((-1.6, 1.4, 0.2)))
        scene.mesh("MirroredInX", "Arrow", 0, Pose((0, 1.4, 0.2), mirror=(-1, 1, 1)))
        with scene.block('GROUP "Inner"'):
            scene.mesh("MirroredInY", "Arrow", 0, Pose((1.6, 1.4, 0.2), mirror=(1, -1, 1)))
            with scene.block('GROUP "Innermost"'):
                scene.mesh("MirroredInZ", "Arrow", 0,
                           Pose((3.2, 1.4, 0.6), scale=(1, 1.3, 2), mirror=(1, 1, -1)))
        scene.mesh("Hidden", "Arrow", 0, Pose((0, 0, 3)), visible=False)
    with scene.block('GROUP "Family"'):
        scene.helper("Grandparent", Pose((-2.5, -0.8, 0.2), turn(YAW, 0.5)))
        scene.mesh("Parent", "Arrow", 1, Pose((0.6, 0, 0), turn(YAW, -0.8), (0.8, 0.8, 0.8)),
                   parent="Grandparent")
        scene.mesh("Child", "Arrow", 1, Pose((1.4, 0.6, 0), turn(YAW, -0.8), (0.8, 0.8, 0.8)),
                   parent="Parent")
    scene.helper("Glass", Pose((2.2, 0, 0), mirror=(-1, 1, 1)))
    scene.mesh("BeforeTheGlass", "Arrow", 0, Pose((1.2, -1, 0.2), turn(YAW, 0.7)))
    scene.mesh("InTheGlass", "Arrow", 0, Pose((-1.0, -1, 0.2), turn(YAW, 0.7)), parent="Glass")
    scene.mesh("PivotMovesTheShape", "Arrow", 1, Pose((-0.4, -1.4, 0.2)),
               pivot=Pose((0, 0, 0), turn(YAW, math.pi / 2)))
    return scene.result("\r\n")


# effect/effect.qsa

def effect():
    name = ("Waves shader='waves.fx' fParam1='0.35' fParam2='2' "
            "vParam1='0.1,0.4,0.6' vParam2='1, 1, 0.9'")
    scene = stage((0, -6, 3), (0, 0, 0.5), 100, [material(name, (0.2, 0.5, 0.7))])
    scene.mesh("Pool", floor(2.5, 2.5, 8), 0)
    return scene.result()
