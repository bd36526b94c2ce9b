"""keywords.qsa, which uses every keyword, and oddities.qsa, which provokes warnings."""

from .materials import (colour_track, material, opacity_track, picture_map,
                        write_materials)
from .poses import Pose, YAW, looking, pose_of, rigid_inverse, turn
from .shapes import Shape
from .small_scenes import box
from .writer import (Scene, bezier_positions, bezier_scales, rotations, sampled_positions,
                     sampled_rotations, sampled_scales, tcb_rotations)

TURNS = [(0, turn(YAW, 0.0)), (50, turn(YAW, 1.2)), (100, turn(YAW, 0.0))]
SIZES = [(0, (1, 1, 1)), (100, (1, 1, 1.5))]


def keyword_materials():
    tracks = [colour_track("Diffuse", [(0, (1, 0.4, 0.3)), (100, (0.3, 0.4, 1))]),
              colour_track("Ambient", [(0, (1, 0.4, 0.3)), (100, (0.3, 0.4, 1))], linear=True),
              opacity_track([(0, 0.9), (100, 0.4)])]
    return [
        material("Everything", (0.9, 0.5, 0.4), shine=(0.5, 0.4), glow=(0.05, 0.05, 0.05),
                 transparency=0.1, blend="Filter", two_sided=True,
                 diffuse=picture_map("checker.png", animation=[("OffsetU", [(0, 0), (100, 1)])]),
                 reflect=picture_map("chrome.png", amount=0.2),
                 bump=picture_map("bumps.png", amount=0.3), animation=tracks),
        material("Parts", children=[
            material("Part one", (0.3, 0.6, 0.4)),
            material("Part two", (0.6, 0.6, 0.3), transparency=0.5,
                     animation=[opacity_track([(0, 0.5), (100, 1)], linear=True)])]),
    ]


def place(x, y=0.0):
    return [(0, (x, y, 0)), (50, (x, y, 0.5)), (100, (x, y, 0))]


def keywords():
    """Small letters, commas between numbers and unknown words are as good as the plain form."""
    scene = Scene(100, background=(0.3, 0.35, 0.4), sky="chrome.png", sound="keywords.wav",
                  script="keywords.txt")
    write_materials(scene, keyword_materials())
    with scene.block("ATMOSPHERIC"):
        with scene.block("STDFOG"):
            scene.values("FOG_COLOR", (0.5, 0.55, 0.6))
            scene.value("FOG_NEAR", 1)
            scene.value("FOG_FAR", 200)
            scene.value("FOG_DENSITY", 0.01)
    scene.helper("Aim", Pose((0, 0, 0.8)), kind="TARGETOBJECT")
    scene.camera("Camera", looking((0, -8, 4), (0, 0, 0.8)), 0.7, "Aim")
    scene.light("Sun", "directional", looking((-4, -6, 8), (0, 0, 0)), (1, 0.95, 0.9), 0.9)
    scene.helper("Holder", Pose((-2.6, 0, 0)), pivot=Pose((0, 0, 0.1)))
    with scene.block("GROUP"):
        scene.mesh("Mapped", box(), 0, Pose((-2.6, 0, 0)), textured=True, edges=True,
                   tracks=(bezier_positions(place(-2.6)), tcb_rotations(TURNS),
                           bezier_scales(SIZES)))
        parts = box()
        parts.take(box((-0.3, -0.3, 1), (0.3, 0.3, 1.6), 1))
        scene.mesh("Parts", parts, 1, Pose((-0.9, 0, 0)),
                   tracks=(sampled_positions(place(-0.9)), rotations(TURNS),
                           sampled_scales(SIZES)))
    scene.mesh("Repeated", "Parts", 1, Pose((0.8, 0, 0)), tracks=(sampled_rotations(TURNS),))
    shape = skinned_post(scene)
    scene.mesh("Skinned", shape[0], None, Pose((2.4, 0, 0)), skin=(Pose((2.4, 0, 0)), shape[1]),
               colour=(0.5, 0.6, 0.8))
    scene.mesh("Bounds", box((-4, -2, -0.2), (4, 2, 3)))
    return plain_variations(scene.result().decode("ascii"))


def skinned_post(scene):
    """A post between two bones, the upper of which turns."""
    foot, step = (2.4, 0, 0), 0.9
    bones = []
    for i in range(2):
        keys = [(frame, turn((0, 1, 0), angle * i)) for frame, angle in
                ((0, -0.4), (50, 0.4), (100, -0.4))]
        scene.helper(f"Bone{i + 1}", Pose((0, 0, step) if i else foot, keys[0][1]),
                     "Bone1" if i else None, (tcb_rotations(keys),) if i else (),
                     kind="BONEOBJECT")
        bind = Pose((foot[0], foot[1], foot[2] + step * i)).matrix()
        bones.append((f"Bone{i + 1}", pose_of(rigid_inverse(bind))))
    shape = Shape()
    shape.turned_profile([(0.3, 0), (0.3, 0.6), (0.28, 0.9), (0.26, 1.2), (0.2, 1.8)], 8)
    for vertex, (_, _, z) in enumerate(shape.points):
        upper = {0: 0.0, 0.6: 0.25, 0.9: 0.5, 1.2: 0.75}.get(z, 1.0)
        for name, weight in (("Bone1", 1 - upper), ("Bone2", upper)):
            if weight:
                shape.weights.setdefault(name, []).append((vertex, weight))
    return shape, bones


def plain_variations(text):
    """Other spellings of the same, as the reader must take them."""
    text = text.replace("*SCENE_LASTFRAME", "*scene_lastframe", 1)
    text = text.replace("0.3\t0.35\t0.4\n", "0.3, 0.35, 0.4\n", 1)
    text = text.replace("*MATERIAL_LIST", '*EXPORTER_NOTE "skipped"\n*UNKNOWN_BLOCK {\n\t*MESH {\n'
                        "\t}\n}\n*MATERIAL_LIST", 1)
    return text.encode("ascii")


def oddities():
    """Each object provokes the warning that its name tells."""
    scene = Scene(100)
    write_materials(scene, [
        material("Lost map", diffuse=picture_map("not_there.png")),
        material("Odd end", diffuse=picture_map("checker.png", time=(0, 1, "sometime")))])
    scene.camera("Camera", looking((0, -10.5, 4.5), (0, 0, 0.5)), 0.7)
    scene.light("OddAspect", "Omni", Pose((-3, -5, 6)), (1, 1, 1), 0.9, aspect=1.5)
    scene.light("OddType", "Laser", Pose((3, -5, 6)), (0.3, 0.3, 0.3), 0.3)
    cube = Shape()
    for z in (0, 1):
        for x, y in ((0, 0), (1, 0), (1, 1), (0, 1)):
            cube.vertex((x, y, z))
    for side, corners in enumerate(((0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7),
                                    (3, 2, 1, 0), (4, 5, 6, 7))):
        a, b, c, d = corners
        cube.triangle(a, b, c)
        cube.triangle(a, c, d)
    scene.mesh("SplitVertices", cube, None, Pose((-4, 0, 0)),
               smoothing=[str(1 + i // 2) for i in range(12)])
    flat = box()
    flat.triangle(0, 0, 1)
    scene.mesh("FaceWithoutArea", flat, None, Pose((-2, 0, 0)))
    scene.mesh("NoSuchParent", "FaceWithoutArea", None, Pose((0, 0, 0)), parent="Nobody")
    scene.mesh("NoSuchMap", box(), 0, Pose((2, 0, 0)), textured=True)
    scene.mesh("OddMapTime", box(), 1, Pose((4, 0, 0)), textured=True)
    backward = [TURNS[0], TURNS[2], TURNS[1]]
    scene.mesh("KeysOutOfOrder", "FaceWithoutArea", None, Pose((-2, 2, 0)),
               tracks=(rotations(backward),))
    scene.helper("LonelyBone", Pose((0, 2, 0)), kind="BONEOBJECT")
    carried = box()
    carried.weights = {"LonelyBone": [(i, 1.0) for i in range(len(carried.points))]}
    bind = pose_of(rigid_inverse(Pose((0, 2, 0)).matrix()))
    scene.mesh("OneBoneOnly", carried, None, Pose((0, 2, 0)),
               skin=(Pose((0, 2, 0)), [("LonelyBone", bind)]))
    return scene.result()
