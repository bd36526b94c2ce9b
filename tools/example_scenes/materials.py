"""Materials: plain records that are written into a MATERIAL_LIST."""

from .writer import number, numbers


def material(name, colour=(0.8, 0.8, 0.8), **options):
    """Options: ambient, specular, shine, glow, transparency, blend, two_sided, diffuse, reflect,
    bump (maps), animation (functions), children (materials)."""
    return {"name": name, "colour": colour} | options


def picture_map(bitmap, **options):
    """Options: amount, offset, tiling, angle, tile (words for U and V), time, animation."""
    return {"bitmap": bitmap} | options


def write_materials(scene, materials):
    with scene.block("MATERIAL_LIST"):
        scene.line(f"MATERIAL_COUNT {len(materials)}")
        for i, entry in enumerate(materials):
            with scene.block(f"MATERIAL {i}"):
                write_material(scene, entry)


def write_material(scene, entry):
    scene.text("MATERIAL_NAME", entry["name"])
    scene.values("MATERIAL_AMBIENT", entry.get("ambient", entry["colour"]))
    scene.values("MATERIAL_DIFFUSE", entry["colour"])
    scene.values("MATERIAL_SPECULAR", entry.get("specular", (0.9, 0.9, 0.9)))
    strength, shine = entry.get("shine", (0, 0.1))
    scene.value("MATERIAL_SHINE", shine)
    scene.value("MATERIAL_SHINESTRENGTH", strength)
    scene.value("MATERIAL_TRANSPARENCY", entry.get("transparency", 0))
    if "blend" in entry:
        scene.line(f"MATERIAL_TRANSPARENCY_TYPE {entry['blend']}")
    if "glow" in entry:
        scene.values("MATERIAL_SELFILLUM_COLOR", entry["glow"])
    scene.line(f"MATERIAL_TWOSIDED {int(entry.get('two_sided', False))}")
    for keyword, key in (("MAP_DIFFUSE", "diffuse"), ("MAP_REFLECT", "reflect"),
                         ("MAP_BUMP", "bump")):
        if key in entry:
            write_map(scene, keyword, entry[key])
    if "animation" in entry:
        with scene.block("MATERIAL_ANIMATION"):
            for track in entry["animation"]:
                track(scene)
    children = entry.get("children", ())
    if children:
        scene.line(f"NUMSUBMTLS {len(children)}")
    for i, child in enumerate(children):
        with scene.block(f"SUBMATERIAL {i}"):
            write_material(scene, child)


def write_map(scene, keyword, entry):
    with scene.block(keyword):
        scene.text("BITMAP", entry["bitmap"])
        scene.value("MAP_AMOUNT", entry.get("amount", 1))
        u, v = entry.get("offset", (0, 0))
        scene.value("UVW_U_OFFSET", u)
        scene.value("UVW_V_OFFSET", v)
        u, v = entry.get("tiling", (1, 1))
        scene.value("UVW_U_TILING", u)
        scene.value("UVW_V_TILING", v)
        u, v, w = entry.get("angle", (0, 0, 0))
        scene.value("UVW_U_ANGLE", u)
        scene.value("UVW_V_ANGLE", v)
        scene.value("UVW_W_ANGLE", w)
        u, v = entry.get("tile", ("Tile", "Tile"))
        scene.text("UVW_TILE_U", u)
        scene.text("UVW_TILE_V", v)
        start, rate, end = entry.get("time", (0, 1, "loop"))
        scene.value("TIME_STARTFRAME", start)
        scene.value("TIME_PLAYBACKRATE", rate)
        scene.text("TIME_ENDCONDITION", end)
        if "animation" in entry:
            with scene.block("MAP_ANIMATION"):
                for attribute, keys in entry["animation"]:
                    scene.text("MAP_ATTRIBUTE", attribute)
                    write_float_keys(scene, keys)


def write_float_keys(scene, keys):
    """Straight lines between (frame, value) keys, written as Bezier keys."""
    with scene.block("CONTROL_FLOAT_BEZIER"):
        for i, (frame, value) in enumerate(keys):
            arrive = leave = 0.0
            if i > 0:
                arrive = -rate(keys[i - 1], keys[i], scene.TICKS)
            if i + 1 < len(keys):
                leave = rate(keys[i], keys[i + 1], scene.TICKS)
            scene.line(f"CONTROL_BEZIER_FLOAT_KEY {scene.tick(frame)}\t{number(value)}\t"
                       f"{number(arrive, 8)}\t{number(leave, 8)}")


def rate(a, b, ticks):
    return (b[1] - a[1]) / ((b[0] - a[0]) * ticks)


def colour_track(attribute, keys, linear=False):
    """Bezier keys have flat tangents here: the colour rests for a moment at each."""
    def write(scene):
        scene.text("MATERIAL_ATTRIBUTE", attribute)
        with scene.block("CONTROL_COLOR_LINEAR" if linear else "CONTROL_COLOR_BEZIER"):
            for frame, value in keys:
                if linear:
                    scene.line(f"CONTROL_POINT3_KEY {scene.tick(frame)}\t{numbers(value)}")
                else:
                    scene.line(f"CONTROL_BEZIER_POINT3_KEY {scene.tick(frame)}\t{numbers(value)}"
                               f"\t{numbers((0, 0, 0))}\t{numbers((0, 0, 0))}")
    return write


def opacity_track(keys, linear=False):
    def write(scene):
        scene.text("MATERIAL_ATTRIBUTE", "Opacity")
        if not linear:
            return write_float_keys(scene, keys)
        with scene.block("CONTROL_FLOAT_LINEAR"):
            for frame, value in keys:
                scene.line(f"CONTROL_FLOAT_KEY {scene.tick(frame)}\t{number(value)}")
    return write
