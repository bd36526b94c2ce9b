"""harbour.qsa: a small harbour on a hazy morning."""

import math

from . import harbour_parts as parts
from .harbour_textures import HAZE
from .materials import material, picture_map, write_materials
from .poses import PITCH, Pose, ROLL, YAW, looking, pose_of, rigid_inverse, then, turn
from .writer import Scene, bezier_positions, rotations, sampled_positions, tcb_rotations

LAST = 240  # frames; all movements close after them
WATER_ORIGIN = (0, 380, 0)  # far away, so that the water is the first of the transparent meshes

HOUSES = (  # name, where its front stands, turn, walls; depth, storeys, door or the house repeated
    ("HouseBack1", (-9.0, 41), 0, "cream", (7.0, 2, 1)),
    ("HouseBack2", (-0.3, 40.5), 0, "rose", (7.5, 3, 2)),
    ("HouseBack3", (8.6, 41.2), 0, "blue", (7.0, 2, 0)),
    ("HouseBack4", (17.6, 41), 0, "ochre", (7.0, 3, 1)),
    ("HouseRight1", (17.5, 26), -90, "ochre", "HouseBack1"),
    ("HouseRight2", (17.2, 16.6), -90, "cream", "HouseBack2"),
    ("HouseRight3", (17.6, 7), -90, "rose", "HouseBack3"),
)
WALL_PAINT = {"cream": (0.90, 0.82, 0.66), "rose": (0.80, 0.54, 0.45),
              "blue": (0.55, 0.67, 0.74), "ochre": (0.84, 0.66, 0.38)}
BOAT_PAINT = {"BoatGreen": (0.10, 0.34, 0.30), "BoatRed": (0.62, 0.14, 0.10),
              "BoatWhite": (0.92, 0.90, 0.86), "BoatBlue": (0.12, 0.24, 0.45)}
BOATS = (  # name, where, heading in degrees, paint, phase
    ("Cutter1", (-5.2, 1.6), 4, "BoatGreen", 0.0),
    ("Cutter2", (-0.6, 1.2), -3, "BoatRed", 1.3),
    ("Cutter3", (4.2, 1.5), 2, "BoatWhite", 2.9),
    ("Cutter4", (1.9, 13.6), 177, "BoatBlue", 4.1),
    ("Cutter5", (-3.6, 13.9), 184, "BoatWhite", 5.0),
)


def paints(name, colours, **shared):
    """A material with one plain child for each (name, colour)."""
    return material(name, children=[material(f"{name} {part}", colour, **shared)
                                    for part, colour in colours])


def boat_material(name, paint):
    return paints(name, (("sides", paint), ("deck", (0.62, 0.46, 0.30)),
                         ("rail", (0.85, 0.80, 0.70)), ("cabin", (0.88, 0.85, 0.78)),
                         ("glass", (0.12, 0.16, 0.20)), ("spars", (0.55, 0.38, 0.22)),
                         ("canvas", (0.86, 0.80, 0.68))), shine=(0.3, 0.3))


def house_material(walls):
    return material(f"House {walls}", children=[
        material("Walls", diffuse=picture_map(f"wall_{walls}.png")),
        material("Tiles", diffuse=picture_map("roof.tga")),
        material("Gable", WALL_PAINT[walls]),
        material("Door", (0.25, 0.17, 0.12)),
        material("Brick", (0.50, 0.36, 0.30)),
        material("Lit window", (0.9, 0.7, 0.4), glow=(0.95, 0.68, 0.30)),
    ])


def material_table():
    """Materials in the order of their numbers, by a short key."""
    once = ("Clamp", "Clamp")
    drift = [("OffsetU", [(0, 0), (LAST, 1)]), ("OffsetV", [(0, 0), (LAST, -1)])]
    table = {
        "water": material("Water", specular=(1, 0.9, 0.75), shine=(0.5, 0.35), transparency=0.3,
                          blend="Filter",
                          diffuse=picture_map("water.png", animation=drift),
                          reflect=picture_map("sky_ball.png", amount=0.35)),
        "quay": material("Quay", children=[
            material("Wall", diffuse=picture_map("stone.png")),
            material("Paving", diffuse=picture_map("paving.bmp"))]),
        "planks": material("Planks", diffuse=picture_map("planks.png")),
        "post": material("Post", (0.36, 0.27, 0.20)),
        "tower": material("Lighthouse", children=[
            material("White bands", (0.93, 0.90, 0.86)),
            material("Iron", (0.34, 0.12, 0.10)),
            material("Foot", (0.60, 0.56, 0.51)),
            material("Opening", (0.16, 0.17, 0.20)),
            material("Lantern", (0.9, 0.8, 0.5), glow=(1.0, 0.86, 0.5)),
            material("Red bands", (0.74, 0.17, 0.13))]),
        "rock": material("Rock", (0.45, 0.42, 0.40)),
        "beam": material("Light beam", glow=(1, 1, 1), transparency=0.45, blend="Additive",
                         two_sided=True, diffuse=picture_map("beam.png", tile=once)),
        "glow": material("Lamp glow", glow=(1, 1, 1), transparency=0.2, blend="Additive",
                         two_sided=True, diffuse=picture_map("glow.png", tile=once)),
        "flag": material("Flag", two_sided=True, diffuse=picture_map("flag.png", tile=once)),
        "sail": material("Sail", (0.95, 0.91, 0.82), two_sided=True, glow=(0.12, 0.10, 0.08)),
        "dinghy": paints("Dinghy", (("sides", (0.90, 0.86, 0.76)), ("inside", (0.55, 0.40, 0.26)),
                                    ("rail", (0.45, 0.16, 0.12)))),
        "buoy": material("Buoy", (0.80, 0.20, 0.10), shine=(0.5, 0.3)),
        "crate": material("Crate", diffuse=picture_map("crate.png")),
        "barrel": paints("Barrel", (("staves", (0.42, 0.29, 0.18)), ("lid", (0.52, 0.38, 0.25)))),
        "lamp": material("Lamp post", children=[
            material("Post iron", (0.12, 0.14, 0.14), shine=(0.4, 0.3)),
            material("Lamp glass", (0.9, 0.8, 0.6), glow=(1.0, 0.80, 0.45))]),
        "crane": paints("Crane", (("frame", (0.74, 0.46, 0.14)), ("cabin", (0.80, 0.76, 0.66)),
                                  ("dark", (0.12, 0.14, 0.16))), shine=(0.3, 0.2)),
        "gull": material("Gull", (0.95, 0.95, 0.93), two_sided=True, glow=(0.1, 0.1, 0.1)),
        "hill near": material("Near hills", (0.25, 0.33, 0.25)),
        "hill far": material("Far hills", (0.30, 0.36, 0.36)),
    }
    table |= {walls: house_material(walls) for walls in WALL_PAINT}
    table |= {name: boat_material(name, paint) for name, paint in BOAT_PAINT.items()}
    return table


class Harbour:
    def __init__(self):
        self.scene = Scene(LAST, background=HAZE, ambient=(0.40, 0.41, 0.47), sky="sky.png",
                           sound="harbour.wav", script="harbour.txt")
        table = material_table()
        write_materials(self.scene, list(table.values()))
        self.number = {key: i for i, key in enumerate(table)}

    def add(self, name, shape, key, pose=Pose(), reflected=False, **options):
        """A mesh; `reflected` adds its mirror image below the water."""
        material_number = self.number[key] if key else None
        self.scene.mesh(name, shape, material_number, pose, **options)
        if reflected:
            source = shape if isinstance(shape, str) else name
            self.scene.mesh(name + "Mirrored", source, material_number, pose, parent="Reflection",
                            tracks=options.get("tracks", ()))

    def build(self):
        self.cameras_and_lights()
        self.scene.helper("Reflection", Pose(mirror=(1, 1, -1)))
        self.sea_and_land()
        self.town()
        self.quay_life()
        self.pier()
        self.boats()
        self.lighthouse()
        self.crane()
        self.flag()
        self.gulls()
        self.add("Bounds", parts.bounds_box((-260, -60, -30), (260, 420, 40)), None)
        return self.scene.result()

    def cameras_and_lights(self):
        scene = self.scene
        with scene.block("ATMOSPHERIC"):
            with scene.block("STDFOG"):
                scene.values("FOG_COLOR", HAZE)
                scene.value("FOG_NEAR", 0)
                scene.value("FOG_FAR", 400)
                scene.value("FOG_DENSITY", 0.008)
        eye, at = (-1.5, -34, 7.2), (0.6, 8, 4.6)
        scene.helper("CameraTarget", Pose(at), kind="TARGETOBJECT")
        scene.camera("Camera", looking(eye, at), 0.66, "CameraTarget")
        scene.camera("FromTheSea", looking((-44, -12, 3.2), (0, 18, 6)), 0.7)
        scene.light("Sun", "Directional", looking((-60, -46, 48), (0, 0, 0)), (1.0, 0.84, 0.62),
                    1.05)
        scene.light("SkyLight", "Directional", looking((50, -40, 60), (0, 0, 0)),
                    (0.50, 0.60, 0.78), 0.28)
        scene.light("Lamp", "Omni", Pose((11.9, -3, 5.4)), (1.0, 0.72, 0.38), 0.22)

    def sea_and_land(self):
        self.add("Sea", parts.water(WATER_ORIGIN), "water", Pose(WATER_ORIGIN), textured=True)
        self.add("NearHills", parts.hills(-180, 20, 26, 3), "hill near", Pose((0, 120, 0)))
        self.add("FarHills", parts.hills(-190, 230, 58, 9), "hill far", Pose((0, 230, 0)))
        self.add("Quay", parts.quay(), "quay", textured=True, reflected=True)
        self.add("KerbRight", parts.kerb(68), "rock", Pose((11.3, -34, parts.QUAY_TOP)))
        self.add("KerbBack", parts.kerb(26), "rock",
                 Pose((11, 34.3, parts.QUAY_TOP), turn(YAW, math.pi / 2)))
        for i, (x, y, size) in enumerate(((-17, 36, 1.0), (-18.5, 41, 1.3), (-17.5, 47, 1.1),
                                          (-14.5, 33, 0.6))):
            pose = Pose((x, y, 0), turn(YAW, i * 1.7), (size, size, size))
            self.add(f"Stone{i + 1}", parts.rock(2.0, 1.7, 9, 6) if i == 0 else "Stone1", "rock",
                     pose, reflected=True)

    def town(self):
        for name, (x, y), degrees, walls, form in HOUSES:
            shape = form if isinstance(form, str) else parts.house(8.4, *form)
            pose = Pose((x, y, parts.QUAY_TOP), turn(YAW, math.radians(degrees)))
            self.add(name, shape, walls, pose, textured=True, reflected=True)

    def quay_life(self):
        top = parts.QUAY_TOP
        lamps = ((12.0, -3), (12.0, 10), (12.0, 23), (-2, 35.2))
        for i, (x, y) in enumerate(lamps):
            self.add(f"Lamp{i + 1}", parts.lamp_post() if i == 0 else "Lamp1", "lamp",
                     Pose((x, y, top)), reflected=True)
            self.add(f"Glow{i + 1}", parts.glow_quad(2.4) if i == 0 else "Glow1", "glow",
                     Pose((x, y - 0.3, top + 3.9)), textured=True)
        crates = ((12.6, -7.2, 0, 0.3, 1), (13.7, -6.7, 0, -0.1, 1.1), (13.0, -7.0, 1, 0.6, 0.9),
                  (12.9, 4.6, 0, 0.2, 1), (13.4, 5.8, 0, 0.9, 0.8), (-7.2, 36, 0, 0.4, 1.2),
                  (-6.0, 36.6, 0, 0, 1))
        for i, (x, y, level, angle, size) in enumerate(crates):
            self.add(f"Crate{i + 1}", parts.crate() if i == 0 else "Crate1", "crate",
                     Pose((x, y, top + level), turn(YAW, angle), (size, size, size)),
                     textured=True)
        for i, (x, y) in enumerate(((12.5, -9.2), (13.4, -9.0), (12.9, 13.2), (3.4, 35.6),
                                    (4.3, 35.8))):
            self.add(f"Barrel{i + 1}", parts.barrel() if i == 0 else "Barrel1", "barrel",
                     Pose((x, y, top)))
        for i, (x, y, angle) in enumerate(((13.0, 1.5, -90), (13.0, 18.5, -90), (7, 36.2, 0))):
            self.add(f"Bench{i + 1}", parts.bench() if i == 0 else "Bench1", "post",
                     Pose((x, y, top), turn(YAW, math.radians(angle))))

    def pier(self):
        self.add("Pier", parts.pier_deck(20.5, 2.4), "planks", Pose((-9.5, 7.4, 1.2)),
                 textured=True, reflected=True)
        for i in range(6):
            for side in (-1, 1):
                name = f"Post{2 * i + (side > 0) + 1}"
                pose = Pose((-9.2 + 3.6 * i, 7.4 + 1.28 * side, 0))
                self.add(name, parts.post() if name == "Post1" else "Post1", "post", pose,
                         reflected=True)

    def rocking(self, position, heading, phase, amount=1.0):
        """Tracks of something that floats: it heaves on Bezier keys and rolls on TCB keys."""
        turns, places = [], []
        for frame in range(0, LAST + 1, 40):
            angle = 2 * math.pi * frame / LAST
            roll = turn(ROLL, 0.055 * amount * math.sin(2 * angle + phase))
            pitch = turn(PITCH, 0.03 * amount * math.sin(angle + 1.7 * phase))
            turns.append((frame, then(then(roll, pitch), turn(YAW, heading))))
            places.append((frame, (*position, 0.06 * amount * math.sin(angle + phase))))
        return Pose(places[0][1], turns[0][1]), (bezier_positions(places, closed=True),
                                                 tcb_rotations(turns))

    def boats(self):
        # The first cutter in the text repeats a mesh that only follows behind it.
        for name, position, degrees, paint, phase in reversed(BOATS):
            pose, tracks = self.rocking(position, math.radians(degrees), phase)
            self.add(name, parts.boat() if name == "Cutter1" else "Cutter1", paint, pose,
                     tracks=tracks, reflected=True)
        pose, tracks = self.rocking((-7.5, -13.5), math.radians(38), 0.8, 1.3)
        self.add("Dinghy", parts.dinghy(), "dinghy", pose, tracks=tracks)
        for i, position in enumerate(((-11.5, -3), (-14, 12), (-9.5, 24))):
            pose, tracks = self.rocking(position, 0.5 * i, 1.1 * i, 2.5)
            self.add(f"Buoy{i + 1}", parts.buoy() if i == 0 else "Buoy1", "buoy", pose,
                     tracks=tracks, reflected=True)
        self.sailing_boat()

    def sailing_boat(self):
        """Crosses the view behind the harbour: out and back as the scene repeats."""
        heading = math.radians(-62)
        turns = [(frame, then(turn(ROLL, 0.13 + 0.03 * math.sin(frame / 20)), turn(YAW, heading)))
                 for frame in range(0, LAST + 1, 60)]
        places = [(0, (-24, 30, 0)), (120, (-20, 32.5, 0.05)), (LAST, (-16, 35, 0))]
        pose = Pose(places[0][1], turns[0][1])
        tracks = (bezier_positions(places), rotations(turns))
        self.add("SailingBoat", "Cutter1", "BoatBlue", pose, tracks=tracks, reflected=True)
        self.scene.mesh("Sails", parts.sails(), self.number["sail"], parent="SailingBoat")
        self.scene.mesh("SailsMirrored", "Sails", self.number["sail"],
                        parent="SailingBoatMirrored")

    def lighthouse(self):
        place = (-23, 52)
        self.add("Islet", parts.rock(6.5, 3.0, 14, 15), "rock", Pose((*place, 0)), reflected=True)
        self.add("Lighthouse", parts.lighthouse(), "tower", Pose((*place, 2.7)), reflected=True)
        turns = [(frame, turn(YAW, math.radians(-118 - 360 * frame / LAST)))
                 for frame in range(0, LAST + 1, 40)]
        self.scene.helper("Beacon", Pose((*place, 18.1), turns[0][1]), tracks=(rotations(turns),))
        self.scene.mesh("Beam", parts.light_beam(), self.number["beam"], parent="Beacon",
                        textured=True)
        self.scene.mesh("BackBeam", "Beam", self.number["beam"], Pose(rotation=turn(YAW, math.pi)),
                        parent="Beacon")
        down = turn(PITCH, math.radians(90 - 14))
        self.scene.light("BeaconLight", "TargetSpot", Pose(rotation=down), (1.0, 0.9, 0.65), 0.8,
                         parent="Beacon", cone=(8, 22))
        self.add("BeaconGlow", "Glow1", "glow", Pose((*(place[0], place[1] - 1.3), 18.1),
                                                     scale=(2.2, 1, 2.2)))

    def crane(self):
        base = (-11.2, 37.0, parts.QUAY_TOP)
        self.add("CraneTower", parts.crane_base(), "crane", Pose(base), reflected=True)
        turns = [(frame, turn(YAW, math.radians(angle)))
                 for frame, angle in ((0, 204), (70, 178), (130, 226), (LAST, 204))]
        top = Pose((base[0], base[1], base[2] + 7.5), turns[0][1])
        tracks = (tcb_rotations(turns, (0, 0, 0, 0.4, 0.4)),)
        self.add("CraneTop", parts.crane_top(), "crane", top, tracks=tracks, reflected=True)
        swing = [(frame, (0, 10.4 + sway, -2.6)) for frame, sway in
                 ((0, 0), (60, 0.25), (120, -0.25), (180, 0.25), (LAST, 0))]
        self.scene.mesh("Load", "Crate1", self.number["crate"], Pose((0, 10.4, -2.6)),
                        parent="CraneTop", tracks=(sampled_positions(swing),))

    def flag(self):
        pole = (-9.2, 7.4, 1.2)
        scene = self.scene
        shape = parts.Shape()
        shape.cylinder(0.07, 0, 6.6, 7, 0, 0.045)
        shape.turned_profile([(0.0, 6.6), (0.11, 6.68), (0.0, 6.8)], 7)
        self.add("FlagPole", shape, "gull", Pose(pole))
        step = 2.7 / parts.FLAG_BONES
        wind = turn(YAW, math.radians(200))
        bones = []
        for i in range(parts.FLAG_BONES):
            turns = []
            for frame in range(0, LAST + 1, 15):
                wave = math.sin(2 * math.pi * 4 * frame / LAST - 1.4 * i)
                swing = turn(YAW, (0.28 + 0.08 * i) * wave)
                turns.append((frame, then(swing, wind) if i == 0 else swing))
            # The cloth was fitted to the bones while it hung straight along the X axis.
            rest = Pose((pole[0], pole[1], pole[2] + 6.4)) if i == 0 else Pose((step, 0, 0))
            bind = Pose((pole[0] + step * i, pole[1], pole[2] + 6.4)).matrix()
            bones.append((f"FlagBone{i}", pose_of(rigid_inverse(bind))))
            pose = Pose(rest.position, turns[0][1])
            scene.helper(f"FlagBone{i}", pose, f"FlagBone{i - 1}" if i else None,
                         (tcb_rotations(turns),), kind="BONEOBJECT")
        place = Pose((pole[0], pole[1], pole[2] + 6.4))
        self.add("Flag", parts.flag(), "flag", place, textured=True, skin=(place, bones))

    def gulls(self):
        flights = (((1.0, 6.0, 9.6), 6.0, 0.0), ((7.0, 14.0, 11.5), 5.0, 2.1),
                   ((-7.5, 12.0, 12.0), 7.0, 3.9), ((-3.0, -8.0, 8.4), 4.5, 5.2))
        for i, (centre, radius, phase) in enumerate(flights):
            turns, places = [], []
            for frame in range(0, LAST + 1, 30):
                angle = 2 * math.pi * frame / LAST + phase
                places.append((frame, (centre[0] + radius * math.cos(angle),
                                       centre[1] + radius * math.sin(angle),
                                       centre[2] + 0.7 * math.sin(2 * angle))))
                turns.append((frame, then(turn(ROLL, -0.35), turn(YAW, angle))))
            name = f"Gull{i + 1}"
            self.add(name, parts.gull_body() if i == 0 else "Gull1", "gull",
                     Pose(places[0][1], turns[0][1]),
                     tracks=(bezier_positions(places, closed=True), rotations(turns)))
            for side, wing in ((1, "Right"), (-1, "Left")):
                flaps = [(frame, turn(ROLL, -side * (0.15 + 0.5 * math.cos(frame / 20 * math.pi
                                                                         + phase))))
                         for frame in range(0, LAST + 1, 20)]
                shape = parts.gull_wing() if (i, side) == (0, 1) else "Gull1Right"
                self.scene.mesh(f"{name}{wing}", shape, self.number["gull"],
                                Pose(mirror=(side, 1, 1)), parent=name,
                                tracks=(rotations(flaps),))


def build():
    return Harbour().build()
