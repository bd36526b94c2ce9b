"""Writes scenes as the text format has them: tabs, one keyword a line."""

from contextlib import contextmanager

from .poses import NO_TURN, Pose, axis_and_angle, back, scaled, subtract, then

IDENTITY = Pose()


def number(value, digits=4):
    text = f"{value:.{digits}f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def numbers(values, digits=4):
    return "\t".join(number(v, digits) for v in values)


class Scene:
    """The text of one scene in the making. Times are frames; the text has ticks.

    A setting `unit` makes nodes and meshes that many times as large, tracks apart: the steps of a
    16-bit depth buffer are too coarse for small scenes whose surfaces meet at flat angles.
    """

    TICKS = 160

    def __init__(self, last_frame=100, version=211, **settings):
        self.lines, self.depth = [], 0
        self.names, self.last_frame = set(), last_frame
        self.unit = settings.get("unit", 1)
        self.line(f"3DSMAX_QSAEXPORT\t{version}")
        with self.block("SCENE"):
            self.values("SCENE_BACKGROUND_STATIC", settings.get("background", (0.1, 0.12, 0.16)))
            self.values("SCENE_AMBIENT_STATIC", settings.get("ambient", (0.25, 0.25, 0.28)))
            self.line(f"SCENE_FIRSTFRAME {settings.get('first_frame', 0)}")
            self.line(f"SCENE_LASTFRAME {last_frame}")
            self.line("SCENE_FRAMESPEED 30")
            self.line(f"SCENE_TICKSPERFRAME {self.TICKS}")
            if "sky" in settings:
                with self.block("SCENE_ENVMAP"):
                    self.text("BITMAP", settings["sky"])
            for keyword, key in (("SCENE_SOUNDFILE", "sound"), ("SCENE_SCRIPTFILE", "script")):
                if key in settings:
                    self.text(keyword, settings[key])

    def line(self, text):
        self.lines.append("\t" * self.depth + "*" + text)

    def values(self, keyword, values, digits=4):
        self.line(f"{keyword}\t{numbers(values, digits)}")

    def value(self, keyword, value, digits=4):
        self.line(f"{keyword} {number(value, digits)}")

    def text(self, keyword, text):
        assert '"' not in text and text.isascii()
        self.line(f'{keyword} "{text}"')

    @contextmanager
    def block(self, head):
        self.line(head + " {")
        self.depth += 1
        yield
        self.depth -= 1
        self.lines.append("\t" * self.depth + "}")

    def result(self, line_end="\n"):
        assert self.depth == 0
        return "".join(line + line_end for line in self.lines).encode("ascii")

    # Nodes

    def transform_block(self, keyword, pose):
        axis, angle = axis_and_angle(pose.rotation)
        with self.block(keyword):
            rows = [row[:3] for row in pose.matrix()]
            rows[3] = scaled(rows[3], self.unit)
            for r, row in enumerate(rows):
                self.values(f"TM_ROW{r}", row, 6)
            self.values("TM_POS", scaled(pose.position, self.unit), 6)
            # The format turns the other way round about its axes than these scenes do.
            self.values("TM_ROTAXIS", scaled(axis, -1), 6)
            self.value("TM_ROTANGLE", angle, 6)
            self.values("TM_SCALE", pose.scale, 6)

    @contextmanager
    def node(self, kind, name, pose=IDENTITY, parent=None, pivot=None):
        assert name not in self.names, name
        self.names.add(name)
        with self.block(kind):
            self.text("NODE_NAME", name)
            if parent:
                self.text("NODE_PARENT", parent)
            self.transform_block("NODE_TM", pose)
            if pivot:
                self.transform_block("PIVOT_TM", pivot)
            yield

    def helper(self, name, pose=IDENTITY, parent=None, tracks=(), kind="HELPEROBJECT", pivot=None):
        with self.node(kind, name, pose, parent, pivot):
            self.tracks(tracks)

    def mesh(self, name, shape, material=None, pose=IDENTITY, **options):
        """A GEOMOBJECT. `shape` is a `Shape`, or the name of the mesh that is repeated."""
        options = {"parent": None, "tracks": (), "colour": (0.7, 0.7, 0.7), "textured": False,
                   "visible": True, "pivot": None, "skin": None, "smoothing": "1",
                   "edges": False} | options
        with self.node("GEOMOBJECT", name, pose, options["parent"], options["pivot"]):
            self.line(f"NODE_VISIBLE {int(options['visible'])}")
            if isinstance(shape, str):
                self.text("CLONE", shape)
            else:
                with self.block("MESH"):
                    self.geometry(shape, options)
            self.tracks(options["tracks"])
            if material is not None:
                self.line(f"MATERIAL_REF {material}")
            self.values("WIREFRAME_COLOR", options["colour"])

    def geometry(self, shape, options):
        low, high = shape.bounds()
        self.values("BOUNDINGBOX_MIN", scaled(low, self.unit))
        self.values("BOUNDINGBOX_MAX", scaled(high, self.unit))
        self.line(f"MESH_NUMVERTEX {len(shape.points)}")
        self.line(f"MESH_NUMFACES {len(shape.faces)}")
        with self.block("MESH_VERTEX_LIST"):
            for i, point in enumerate(shape.points):
                self.line(f"MESH_VERTEX {i}\t{numbers(scaled(point, self.unit), 3)}")
        with self.block("MESH_FACE_LIST"):
            edges = "\tAB: 1 BC: 1 CA: 0" if options["edges"] else ""
            for i, (a, b, c, material) in enumerate(shape.faces):
                smoothing = options["smoothing"]
                smoothing = smoothing[i] if isinstance(smoothing, list) else smoothing
                self.line(f"MESH_FACE {i}:\tA: {a} B: {b} C: {c}{edges}"
                          f"\t*MESH_SMOOTHING {smoothing}\t*MESH_MTLID {material}")
        if options["textured"]:
            self.texture_coordinates(shape)
        if options["skin"]:
            self.skin(shape, *options["skin"])

    def texture_coordinates(self, shape):
        self.line(f"MESH_NUMTVERTEX {len(shape.uvs)}")
        with self.block("MESH_TVERTLIST"):
            for i, (u, v) in enumerate(shape.uvs):
                self.line(f"MESH_TVERT {i}\t{numbers((u, v, 0), 3)}")
        self.line(f"MESH_NUMTVFACES {len(shape.faces)}")
        with self.block("MESH_TFACELIST"):
            for i, (a, b, c, _) in enumerate(shape.faces):
                self.line(f"MESH_TFACE {i}\t{a}\t{b}\t{c}")

    def skin(self, shape, mesh_pose, bones):
        """`bones`: (name, pose that carries the world into the bone). Weights: `shape.weights`."""
        with self.block("MESH_WEIGHTS"):
            self.transform_block("MESH_INIT_TM", mesh_pose)
            for name, pose in bones:
                with self.block("BONE_WEIGHT"):
                    self.text("BONE_NAME", name)
                    self.transform_block("BONE_INIT_TM", pose)
                    for vertex, weight in shape.weights.get(name, ()):
                        self.line(f"INDEX_WEIGHT {vertex}\t{number(weight)}")

    def camera(self, name, pose, field_of_view, target=None, tracks=(), parent=None):
        with self.node("CAMERAOBJECT", name, pose, parent):
            if target:
                self.text("TARGET_NODE", target)
            with self.block("CAMERA_SETTINGS"):
                self.value("CAMERA_FOV", field_of_view)
            self.tracks(tracks)

    def light(self, name, kind, pose, colour, strength=1.0, **options):
        """`cone`: full angles in degrees of the bright middle and of the rim."""
        with self.node("LIGHTOBJECT", name, pose, options.get("parent")):
            self.line(f"LIGHT_TYPE {kind}")
            self.line(f"LIGHT_USELIGHT {int(options.get('on', True))}")
            with self.block("LIGHT_SETTINGS"):
                self.values("LIGHT_COLOR", colour)
                self.value("LIGHT_INTENS", strength)
                self.value("LIGHT_ASPECT", options.get("aspect", 1))
                inner, outer = options.get("cone", (43, 45))
                self.value("LIGHT_HOTSPOT", inner)
                self.value("LIGHT_FALLOFF", outer)
                self.value("LIGHT_TDIST", options.get("target_distance", 100))
            self.tracks(options.get("tracks", ()))

    # Animation of nodes: each track is a function of the scene

    def tracks(self, tracks):
        if tracks:
            with self.block("TM_ANIMATION"):
                for track in tracks:
                    track(self)

    def tick(self, frame):
        return number(frame * self.TICKS)


def smooth_tangents(keys, closed):
    """Speed per tick at each (frame, values) key, from its neighbours; two rates a key, as the
    format has them: one that points back in time and one that points ahead."""
    rates = []
    for i, (frame, value) in enumerate(keys):
        before, after = keys[max(0, i - 1)], keys[min(len(keys) - 1, i + 1)]
        span = after[0] - before[0]
        step = subtract(after[1], before[1])
        if closed and i in (0, len(keys) - 1):
            before, after = keys[-2], keys[1]
            span = keys[-1][0] - before[0] + after[0] - keys[0][0]
            step = subtract(after[1], before[1])
        rate = scaled(step, 1 / (span * Scene.TICKS))
        rates.append((scaled(rate, -1), rate))
    return rates


def bezier_positions(keys, closed=False):
    def write(scene):
        with scene.block("CONTROL_POS_BEZIER"):
            for (frame, value), (arrive, leave) in zip(keys, smooth_tangents(keys, closed)):
                scene.line(f"CONTROL_BEZIER_POS_KEY {scene.tick(frame)}\t{numbers(value)}\t"
                           f"{numbers(arrive, 7)}\t{numbers(leave, 7)}")
    return write


def sampled_positions(keys):
    def write(scene):
        with scene.block("CONTROL_POS_TRACK"):
            for frame, value in keys:
                scene.line(f"CONTROL_POS_SAMPLE {scene.tick(frame)}\t{numbers(value)}")
    return write


def sampled_scales(keys):
    def write(scene):
        with scene.block("CONTROL_SCALE_TRACK"):
            for frame, value in keys:
                scene.line(f"CONTROL_SCALE_SAMPLE {scene.tick(frame)}\t{numbers(value)}")
    return write


def bezier_scales(keys):
    def write(scene):
        with scene.block("CONTROL_SCALE_BEZIER"):
            for frame, value in keys:
                scene.line(f"CONTROL_BEZIER_SCALE_KEY {scene.tick(frame)}\t{numbers(value)}")
    return write


def _relative_turns(keys):
    """(frame, axis as the format has it, angle): the first key whole, each other from the last."""
    before = NO_TURN
    for frame, rotation in keys:
        axis, angle = axis_and_angle(then(back(before), rotation))
        yield frame, scaled(axis, -1), angle
        before = rotation


def rotations(keys, track="CONTROL_ROT_LINEAR", key="CONTROL_ROT_KEY"):
    """Absolute turns, each less than half a circle from the last."""
    def write(scene):
        with scene.block(track):
            for frame, axis, angle in _relative_turns(keys):
                scene.line(f"{key} {scene.tick(frame)}\t{numbers(axis, 6)}\t{number(angle, 6)}")
    return write


def sampled_rotations(keys):
    return rotations(keys, "CONTROL_ROT_TRACK", "CONTROL_ROT_SAMPLE")


def tcb_rotations(keys, shape=(0, 0, 0, 0, 0)):
    """`shape`: tension, continuity, bias, ease in, ease out of every key."""
    def write(scene):
        with scene.block("CONTROL_ROT_TCB"):
            for frame, axis, angle in _relative_turns(keys):
                scene.line(f"CONTROL_TCB_ROT_KEY {scene.tick(frame)}\t{numbers(axis, 6)}\t"
                           f"{number(angle, 6)}\t{numbers(shape)}")
    return write
