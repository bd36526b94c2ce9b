"""Text scenes of 1 MiB that repeat, nest and multiply what the format allows."""

import pathlib
import re

from .cases import MEBIBYTE, Case, fill

HEAD = b'*3DSMAX_QSAEXPORT 211\n'
#: A mesh of one face. What stands for %s comes before its end.
TRIANGLE = (b'*GEOMOBJECT{*NODE_NAME"%s"*MESH{*MESH_NUMVERTEX 3 *MESH_NUMFACES 1 *MESH_VERTEX_LIST{*MESH_VERTEX 0 0 0 0 '
            b'*MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0}*MESH_FACE_LIST{*MESH_FACE 0: A: 0 B: 1 C: 2}}%s}')
ONE_MATERIAL = b'*MATERIAL_LIST{*MATERIAL 0{}}'

#: The blocks that hold each other, from the outermost to the innermost.
BLOCKS = (
    b'',
    b'*SCENE{', b'*SCENE{*SCENE_ENVMAP{', b'*ATMOSPHERIC{', b'*ATMOSPHERIC{*STDFOG{',
    b'*MATERIAL_LIST{', b'*MATERIAL_LIST{*MATERIAL 0{', b'*MATERIAL_LIST{*MATERIAL 0{*SUBMATERIAL 0{',
    b'*MATERIAL_LIST{*MATERIAL 0{*MAP_DIFFUSE{', b'*MATERIAL_LIST{*MATERIAL 0{*MAP_DIFFUSE{*MAP_ANIMATION{',
    b'*MATERIAL_LIST{*MATERIAL 0{*MAP_DIFFUSE{*MAP_ANIMATION{*MAP_ATTRIBUTE "TileU"*CONTROL_FLOAT_BEZIER{',
    b'*MATERIAL_LIST{*MATERIAL 0{*MATERIAL_ANIMATION{*MATERIAL_ATTRIBUTE "Diffuse"*CONTROL_COLOR_BEZIER{',
    b'*MATERIAL_LIST{*MATERIAL 0{*MATERIAL_ANIMATION{*MATERIAL_ATTRIBUTE "Opacity"*CONTROL_FLOAT_LINEAR{',
    b'*GEOMOBJECT{', b'*GEOMOBJECT{*NODE_TM{', b'*GEOMOBJECT{*TM_ANIMATION{',
    b'*GEOMOBJECT{*TM_ANIMATION{*CONTROL_POS_TRACK{', b'*GEOMOBJECT{*TM_ANIMATION{*CONTROL_ROT_TRACK{',
    b'*GEOMOBJECT{*TM_ANIMATION{*CONTROL_SCALE_TRACK{',
    b'*GEOMOBJECT{*MESH{', b'*GEOMOBJECT{*MESH{*MESH_NUMVERTEX 9999 *MESH_VERTEX_LIST{',
    b'*GEOMOBJECT{*MESH{*MESH_NUMFACES 9999 *MESH_FACE_LIST{',
    b'*GEOMOBJECT{*MESH{*MESH_NUMTVERTEX 9999 *MESH_TVERTLIST{',
    b'*GEOMOBJECT{*MESH{*MESH_NUMTVFACES 9999 *MESH_TFACELIST{',
    b'*GEOMOBJECT{*MESH{*MESH_NUMVERTEX 9999 *MESH_WEIGHTS{',
    b'*GEOMOBJECT{*MESH{*MESH_NUMVERTEX 9999 *MESH_WEIGHTS{*BONE_WEIGHT{',
    b'*CAMERAOBJECT{', b'*CAMERAOBJECT{*CAMERA_SETTINGS{', b'*LIGHTOBJECT{', b'*LIGHTOBJECT{*LIGHT_SETTINGS{',
    b'*BONEOBJECT{', b'*HELPEROBJECT{', b'*TARGETOBJECT{', b'*GROUP "g"{',
)

#: Values as they may follow any keyword.
VALUES = (b'', b' 0', b' 1 2 3 4', b' 2147483647', b' -2147483648', b' 99999999999999999999', b' 1e38 1e39 -1e-46',
          b' nan inf -inf', b' ...+-', b' "a"', b' "', b' ""', b'{', b' 0{', b' 0{}', b'{}', b' 0 "a"{}', b'}', b',,,',
          b' 0: A: 0 B: 0 C: 0', b' "shader=\'a\' fParam1=\'1\'"', b' 0.' + b'0' * 40 + b'1', b' \xff\x00\x80')


def keywords(root):
    """All keywords, from the reader's own table, so that none is forgotten."""
    table = (root / 'src/qsa/QSA_Keywords.cpp').read_text()
    found = re.findall(r'^    \{"([A-Z0-9_]+)", \w+\}', table, re.MULTILINE)
    assert len(found) > 100
    return [name.encode() for name in found]


def closed(block):
    return b'}' * block.count(b'{')


def every_keyword(root, random, count):
    """Keywords in blocks: each keyword at least once, with a value drawn by chance, then mixtures."""
    words = keywords(root)
    for i in range(count):
        word = words[i % len(words)]
        block = random.choice(BLOCKS)
        value = random.choice(VALUES)
        content = fill(b'*' + word + value + b'\n', HEAD + block, closed(block))
        yield Case(f'keyword-{i}-{word.decode()}', 'a.qsa', {'a.qsa': content})


def random_tokens(root, random, count):
    words = keywords(root)
    for i in range(count):
        depth_wanted = random.choice((2, 20, 200000))
        few = random.sample(words, random.choice((3, 10, len(words))))
        depth = 0

        def unit(_):
            nonlocal depth
            part = b'*' + random.choice(few) + random.choice(VALUES)
            if part.endswith(b'{'):
                depth += 1
            if depth > depth_wanted:
                depth -= 1
                part += b'}'
            return part + random.choice((b' ', b'\n', b'\t', b''))
        yield Case(f'tokens-{i}', 'a.qsa', {'a.qsa': fill(unit, HEAD + random.choice(BLOCKS))})


def simple_texts():
    """One thing, over and over."""
    units = {
        'zeros': b'\0', 'blanks': b' ', 'lines': b'\n', 'stars': b'*', 'open': b'{', 'close': b'}', 'quotes': b'"',
        'pairs': b'{}', 'letters': b'a', 'bytes-255': b'\xff', 'commas': b',', 'comments': b'// a\n', 'star-a': b'*a ',
        'star-open': b'*{', 'words': b'*' + b'A' * 126 + b' ', 'long-words': b'*' + b'A' * 5000 + b' ',
        'quoted': b'"' + b'a' * 126 + b'" ', 'versions': b'*3DSMAX_QSAEXPORT 200 ',
    }
    for name, unit in units.items():
        yield Case(f'only-{name}', 'a.qsa', {'a.qsa': fill(unit)})
        yield Case(f'head-{name}', 'a.qsa', {'a.qsa': fill(unit, HEAD)})
    for block in BLOCKS:
        if block:
            yield Case(f'nested-{block.decode()}', 'a.qsa', {'a.qsa': fill(block, HEAD)})
            yield Case(f'many-{block.decode()}', 'a.qsa', {'a.qsa': fill(block + closed(block), HEAD)})
    for keyword in (b'*NODE_NAME', b'*NODE_PARENT', b'*CLONE', b'*SCENE_SOUNDFILE', b'*BITMAP'):
        for block in (b'*HELPEROBJECT{', b'*GEOMOBJECT{', b'*SCENE{', b'*SCENE{*SCENE_ENVMAP{'):
            yield Case(f'open-quote-{block.decode()}{keyword.decode()}', 'a.qsa',
                       {'a.qsa': fill(b'a', HEAD + block + keyword + b' "')})
            yield Case(f'long-text-{block.decode()}{keyword.decode()}', 'a.qsa',
                       {'a.qsa': fill(b'a', HEAD + block + keyword + b' "', b'"}}')})


def node(kind, number):
    return b'*%s{*NODE_NAME"n%d"*NODE_PARENT"n%d"}' % (kind, number, number - 1)


def many_nodes(random):
    for kind in (b'HELPEROBJECT', b'BONEOBJECT', b'TARGETOBJECT', b'CAMERAOBJECT', b'LIGHTOBJECT', b'GEOMOBJECT'):
        name = kind.decode().lower()
        yield Case(f'many-{name}', 'a.qsa', {'a.qsa': fill(b'*%s{}' % kind, HEAD)})
        yield Case(f'same-name-{name}', 'a.qsa', {'a.qsa': fill(b'*%s{*NODE_NAME"a"}' % kind, HEAD)})
        yield Case(f'own-parent-{name}', 'a.qsa', {'a.qsa': fill(b'*%s{*NODE_NAME"a"*NODE_PARENT"a"}' % kind, HEAD)})
        yield Case(f'chain-{name}', 'a.qsa', {'a.qsa': fill(lambda i: node(kind, i + 1), HEAD)})
        yield Case(f'chain-back-{name}', 'a.qsa', {'a.qsa': fill(lambda i: node(kind, 99999 - i), HEAD)})
        yield Case(f'no-parent-{name}', 'a.qsa',
                   {'a.qsa': fill(lambda i: b'*%s{*NODE_NAME"n"*NODE_PARENT"p%d"}' % (kind, i), HEAD)})
        prefix = b'x' * 400
        yield Case(f'long-names-{name}', 'a.qsa',
                   {'a.qsa': fill(lambda i: b'*%s{*NODE_NAME"%s%d"*NODE_PARENT"%s%d"}' % (
                       kind, prefix, i, prefix, random.randrange(1000)), HEAD)})
    yield Case('camera-targets', 'a.qsa', {'a.qsa': fill(
        lambda i: b'*CAMERAOBJECT{*NODE_NAME"n%d"*TARGET_NODE"n%d"*NODE_PARENT"n%d"}' % (i, i + 1, i - 1), HEAD)})
    yield Case('light-types', 'a.qsa', {'a.qsa': fill(
        lambda i: b'*LIGHTOBJECT{*NODE_NAME"n%d"*LIGHT_TYPE x%d *LIGHT_SETTINGS{*LIGHT_ASPECT %d}}' % (i, i, i), HEAD)})
    yield Case('zero-transforms', 'a.qsa', {'a.qsa': fill(
        lambda i: b'*HELPEROBJECT{*NODE_NAME"n%d"*NODE_TM{*TM_SCALE 0 0 0 *TM_ROW0 0 0 0}}' % i, HEAD)})


def many_materials():
    yield Case('materials', 'a.qsa', {'a.qsa': fill(lambda i: b'*MATERIAL %d{}' % i, HEAD + b'*MATERIAL_LIST{', b'}')})
    yield Case('material-lists', 'a.qsa', {'a.qsa': fill(ONE_MATERIAL, HEAD)})
    yield Case('submaterials', 'a.qsa', {'a.qsa': fill(
        lambda i: b'*SUBMATERIAL %d{}' % i, HEAD + b'*MATERIAL_LIST{*MATERIAL 0{', b'}}')})
    yield Case('nested-submaterials', 'a.qsa', {'a.qsa': fill(
        b'*SUBMATERIAL 0{', HEAD + b'*MATERIAL_LIST{*MATERIAL 0{')})
    yield Case('warning-each', 'a.qsa', {'a.qsa': fill(
        lambda i: b'*MATERIAL %d{*NUMSUBMTLS %d}' % (i, i + 1), HEAD + b'*MATERIAL_LIST{', b'}')})
    for block in ('{*MAP_DIFFUSE{}*MAP_REFLECT{}*MAP_BUMP{}}', '{*MAP_DIFFUSE{*BITMAP"a"}}',
                  '{*MATERIAL_ANIMATION{*MATERIAL_ATTRIBUTE "Diffuse"*CONTROL_COLOR_BEZIER{}}}'):
        unit = block.encode()
        yield Case(f'materials-{block}', 'a.qsa',
                   {'a.qsa': fill(lambda i: b'*MATERIAL %d' % i + unit, HEAD + b'*MATERIAL_LIST{', b'}')})


def faces_of(number, materials):
    """A mesh whose faces have one submaterial each."""
    faces = b''.join(b'*MESH_FACE %d: A:0 B:1 C:2 *MESH_MTLID %d\n' % (i, i % materials) for i in range(number))
    return (b'*GEOMOBJECT{*NODE_NAME"s"*MATERIAL_REF 0 *MESH{*MESH_NUMVERTEX 3 *MESH_NUMFACES %d *MESH_VERTEX_LIST{'
            b'*MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0}*MESH_FACE_LIST{%s}}}' % (number, faces))


def materials_times_meshes():
    """What a mesh copies of its material, as often as there are meshes."""
    subs = b''.join(b'*SUBMATERIAL %d{}' % i for i in range(2000))
    many = HEAD + b'*MATERIAL_LIST{*MATERIAL 0{*NUMSUBMTLS 2000' + subs + b'}}' + faces_of(2000, 2000)
    clone = b'*GEOMOBJECT{*NODE_NAME"%d"*MATERIAL_REF 0 *CLONE"s"}'
    yield Case('clones-of-2000-materials', 'a.qsa', {'a.qsa': fill(lambda i: clone % i, many)})
    yield Case('mesh-of-many-materials', 'a.qsa', {'a.qsa': HEAD + b'*MATERIAL_LIST{*MATERIAL 0{' + b''.join(
        b'*SUBMATERIAL %d{}' % i for i in range(15000)) + b'}}' + faces_of(15000, 15000)})
    for attribute, kind, key in ((b'Diffuse', b'COLOR', b'*CONTROL_BEZIER_POINT3_KEY %d 1 1 1 0 0 0 0 0 0'),
                                 (b'Opacity', b'FLOAT', b'*CONTROL_BEZIER_FLOAT_KEY %d 1 0 0')):
        keys = b''.join(key % i for i in range(1000))
        track = (HEAD + b'*MATERIAL_LIST{*MATERIAL 0{*MATERIAL_ANIMATION{*MATERIAL_ATTRIBUTE "%s"*CONTROL_%s_BEZIER{%s}'
                 b'}}}' % (attribute, kind, keys))
        name = attribute.decode().lower()
        yield Case(f'meshes-of-animated-{name}', 'a.qsa', {'a.qsa': fill(
            lambda i: TRIANGLE % (b'%d' % i, b'*MATERIAL_REF 0'), track)})
        yield Case(f'clones-of-animated-{name}', 'a.qsa', {'a.qsa': fill(
            lambda i: clone % i, track + TRIANGLE % (b's', b'*MATERIAL_REF 0'))})
    effect = HEAD + b"*MATERIAL_LIST{*MATERIAL 0{*MATERIAL_NAME \"shader='none'\"}}"
    yield Case('clones-of-missing-effect', 'a.qsa', {'a.qsa': fill(
        lambda i: clone % i, effect + TRIANGLE % (b's', b'*MATERIAL_REF 0'))})
    bones = b''.join(b'*BONE_WEIGHT{*BONE_NAME"%d"*BONE_INIT_TM{*TM_ROW0 1 0 0}}' % i for i in range(9000))
    weights = b'*MESH_WEIGHTS{*MESH_INIT_TM{}%s}}' % bones
    skinned = (TRIANGLE % (b's', b'')).replace(b'}}}', b'}' + weights + b'}')
    yield Case('clones-of-many-bones', 'a.qsa', {'a.qsa': fill(lambda i: clone % i, HEAD + skinned)})
    yield Case('many-bones', 'a.qsa', {'a.qsa': HEAD + (TRIANGLE % (b's', b'')).replace(
        b'}}}', b'}*MESH_WEIGHTS{*MESH_INIT_TM{}' + fill(
            lambda i: b'*BONE_WEIGHT{*BONE_NAME"%d"*BONE_INIT_TM{}}' % i, size=MEBIBYTE - 500) + b'}}}')})


def everything_at_once():
    """The memory of each of its parts adds up: turns, copies of keys, and many objects."""
    keys = b''.join(b'*CONTROL_BEZIER_POINT3_KEY %d 1 1 1 0 0 0 0 0 0' % i for i in range(1000))
    before = (HEAD + b'*HELPEROBJECT{*TM_ANIMATION{*CONTROL_ROT_TRACK{*CONTROL_ROT_SAMPLE 0 1 0 0 0 *CONTROL_ROT_SAMPLE 9 1 0 0 '
              b'300000 *CONTROL_ROT_SAMPLE 9 1 0 0 300000}}}*MATERIAL_LIST{*MATERIAL 0{*MATERIAL_ANIMATION{*MATERIAL_ATTRIBUTE '
              b'"Diffuse"*CONTROL_COLOR_BEZIER{' + keys + b'}}}}' + TRIANGLE % (b's', b'*MATERIAL_REF 0'))
    before += b''.join(b'*GEOMOBJECT{*NODE_NAME"%d"*MATERIAL_REF 0 *CLONE"s"}' % i for i in range(640))
    yield Case('everything-at-once', 'a.qsa', {'a.qsa': fill(b'*BONEOBJECT{}', before)})


def many_meshes(random):
    yield Case('meshes', 'a.qsa', {'a.qsa': fill(lambda i: TRIANGLE % (b'%d' % i, b''), HEAD)})
    yield Case('meshes-named-alike', 'a.qsa', {'a.qsa': fill(lambda i: TRIANGLE % (b'a', b''), HEAD)})
    yield Case('meshes-named-bounds', 'a.qsa', {'a.qsa': fill(lambda i: TRIANGLE % (b'Bounds', b''), HEAD)})
    yield Case('wrong-materials', 'a.qsa', {'a.qsa': fill(
        lambda i: TRIANGLE % (b'%d' % i, b'*MATERIAL_REF %d' % (i + 1)), HEAD)})
    source = HEAD + TRIANGLE % (b's', b'')
    for name, unit in (('clones', lambda i: b'*GEOMOBJECT{*NODE_NAME"%d"*CLONE"s"}' % i),
                       ('clones-named-alike', lambda i: b'*GEOMOBJECT{*NODE_NAME"a"*CLONE"s"}'),
                       ('clone-chain', lambda i: b'*GEOMOBJECT{*NODE_NAME"%d"*CLONE"%d"}' % (
                           i, i - 1) if i else b'*GEOMOBJECT{*NODE_NAME"0"*CLONE"s"}'),
                       ('clones-of-themselves', lambda i: b'*GEOMOBJECT{*NODE_NAME"%d"*CLONE"%d"}' % (i, i)),
                       ('clones-of-nothing', lambda i: b'*GEOMOBJECT{*NODE_NAME"%d"*CLONE"x%d"}' % (i, i)),
                       ('parents', lambda i: b'*GEOMOBJECT{*NODE_NAME"%d"*NODE_PARENT"%d"*CLONE"s"}' % (i, i - 1))):
        yield Case(name, 'a.qsa', {'a.qsa': fill(unit, source)})
    faces = b''.join(b'*MESH_FACE %d: A:%d B:%d C:%d\n' % (i, i % 99, (i + 1) % 99, (i * 7 + 2) % 99)
                     for i in range(16000))
    points = b''.join(b'*MESH_VERTEX %d %d %d %d\n' % (i, i, i * i % 17, i * i * i % 13) for i in range(99))
    big = (b'*GEOMOBJECT{*NODE_NAME"s"*MESH{*MESH_NUMVERTEX 99 *MESH_NUMFACES 16000 *MESH_VERTEX_LIST{%s}'
           b'*MESH_FACE_LIST{%s}}}' % (points, faces))
    yield Case('clones-of-16000-faces', 'a.qsa', {'a.qsa': fill(
        lambda i: b'*GEOMOBJECT{*NODE_NAME"%d"*CLONE"s"}' % i, HEAD + big)})
    hub = b''.join(b'*MESH_FACE %d:A:0B:%dC:%d *MESH_SMOOTHING %d\n' % (i, i % 999 + 1, (i + 1) % 999 + 1, i % 32 + 1)
                   for i in range(20000))
    points = b''.join(b'*MESH_VERTEX %d %d %d %d\n' % (i, i, i * i % 17, i * i * i % 13) for i in range(1000))
    yield Case('hub', 'a.qsa', {'a.qsa': HEAD + b'*GEOMOBJECT{*NODE_NAME"s"*MESH{*MESH_NUMVERTEX 1000 *MESH_NUMFACES '
               b'20000 *MESH_VERTEX_LIST{%s}*MESH_FACE_LIST{%s}}}' % (points, hub)})
    smoothing = b','.join(b'%d' % random.randrange(99) for _ in range(300000))
    yield Case('smoothing', 'a.qsa', {'a.qsa': (HEAD + b'*GEOMOBJECT{*MESH{*MESH_NUMFACES 1 *MESH_FACE_LIST{*MESH_FACE '
               b'0: A:0 B:0 C:0 *MESH_SMOOTHING ' + smoothing)[:MEBIBYTE]})


def many_counts():
    for keyword in (b'MESH_NUMVERTEX', b'MESH_NUMFACES', b'MESH_NUMTVERTEX', b'MESH_NUMTVFACES'):
        for number in (50000, 60000, 1000, 0, -1, 2147483647):
            unit = b'*%s %d ' % (keyword, number)
            name = f'{keyword.decode()}-{number}'
            yield Case(f'counts-{name}', 'a.qsa', {'a.qsa': fill(unit, HEAD + b'*GEOMOBJECT{*NODE_NAME"a"*MESH{')})
            yield Case(f'meshes-{name}', 'a.qsa', {'a.qsa': fill(b'*GEOMOBJECT{*NODE_NAME"a"*MESH{' + unit + b'}}', HEAD)})
    for vertices, faces in ((50000, 1), (1, 50000), (50000, 8), (3, 1000)):
        unit = b'*GEOMOBJECT{*NODE_NAME"%%d"*MESH{*MESH_NUMVERTEX %d *MESH_NUMFACES %d}}' % (vertices, faces)
        yield Case(f'empty-lists-{vertices}-{faces}', 'a.qsa', {'a.qsa': fill(lambda i: unit % i, HEAD)})
    for weight in (49999, 0):
        unit = (b'*GEOMOBJECT{*NODE_NAME"%%d"*MESH{*MESH_NUMVERTEX 50000 *MESH_NUMFACES 1 *MESH_VERTEX_LIST{*MESH_VERTEX 0 0 '
                b'0 0 *MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0}*MESH_FACE_LIST{*MESH_FACE 0:A:49999 B:1 C:2}*MESH_WEIGHTS{'
                b'*MESH_INIT_TM{}*BONE_WEIGHT{*BONE_NAME"b"*BONE_INIT_TM{}*INDEX_WEIGHT %d 1}}}}' % weight)
        yield Case(f'far-corners-{weight}', 'a.qsa', {'a.qsa': fill(lambda i: unit % i, HEAD)})


def many_keys():
    animated = HEAD + b'*SCENE{}*HELPEROBJECT{*NODE_NAME"a"*TM_ANIMATION{'
    for name, key in (('pos', b'*CONTROL_POS_SAMPLE %d 1 2 3\n'),
                      ('pos-bezier', b'*CONTROL_BEZIER_POS_KEY %d 1 2 3 4 5 6 7 8 9\n'),
                      ('pos-empty', b'*CONTROL_POS_SAMPLE\n'),
                      ('rot', b'*CONTROL_ROT_SAMPLE %d 1 0 0 1\n'), ('rot-turns', b'*CONTROL_ROT_SAMPLE %d 1 0 0 99\n'),
                      ('rot-one-turn', b'*CONTROL_ROT_SAMPLE %d 1 0 0 300000\n'),
                      ('rot-tcb', b'*CONTROL_TCB_ROT_KEY %d 1 0 0 9 1 1 1 1 1\n'),
                      ('rot-tiny', b'*CONTROL_ROT_KEY 0 1,1,1,7\n'),
                      ('scale', b'*CONTROL_SCALE_SAMPLE %d 1 2 3\n'), ('scale-nan', b'*CONTROL_SCALE_SAMPLE nan 1 2 3\n')):
        track = animated + b'*CONTROL_%s_TRACK{' % name.split('-', maxsplit=1)[0].upper().encode()
        for order in (1, -1):
            yield Case(f'keys-{name}{order}', 'a.qsa', {'a.qsa': fill(
                lambda i: key % (i * order) if b'%d' in key else key, track, b'}}}')})
    yield Case('nodes-with-turns', 'a.qsa', {'a.qsa': fill(
        b'*HELPEROBJECT{*TM_ANIMATION{*CONTROL_ROT_TRACK{*CONTROL_ROT_SAMPLE 0 1 0 0 0 *CONTROL_ROT_SAMPLE 1 1 0 0 '
        b'99999}}}', HEAD)})


def missing_pictures():
    mapped = b'{*MAP_DIFFUSE{*BITMAP"%d.png"}*MAP_REFLECT{*BITMAP"r%d.png"}}'
    subs = b''.join(b'*SUBMATERIAL %d' % i + mapped % (i, i) for i in range(6000))
    yield Case('missing-pictures', 'a.qsa', {'a.qsa': HEAD + b'*MATERIAL_LIST{*MATERIAL 0{' + subs + b'}}' +
                                             faces_of(6000, 6000)})
    deep = b'/'.join([b'a'] * 60)
    subs = b''.join(b'*SUBMATERIAL %d{*MAP_DIFFUSE{*BITMAP"%s%d"}}' % (i, deep, i) for i in range(4000))
    yield Case('missing-pictures-deep', 'a.qsa', {'a.qsa': HEAD + b'*MATERIAL_LIST{*MATERIAL 0{' + subs + b'}}' +
                                                  faces_of(4000, 4000)})
    yield Case('backgrounds', 'a.qsa', {'a.qsa': fill(lambda i: b'*SCENE{*SCENE_ENVMAP{*BITMAP"%d"}}' % i, HEAD)})
    effects = b''.join(b"*SUBMATERIAL %d{*MATERIAL_NAME\"shader='%d'\"}" % (i, i) for i in range(7000))
    yield Case('missing-effects', 'a.qsa', {'a.qsa': HEAD + b'*MATERIAL_LIST{*MATERIAL 0{' + effects + b'}}' +
                                            faces_of(7000, 7000)})


def text_cases(root, random, count):
    yield from simple_texts()
    yield from many_nodes(random)
    yield from many_materials()
    yield from materials_times_meshes()
    yield from everything_at_once()
    yield from many_meshes(random)
    yield from many_counts()
    yield from many_keys()
    yield from missing_pictures()
    yield from every_keyword(root, random, count)
    yield from random_tokens(root, random, count // 4)


def large_texts(number):
    """Files of their own for `number` things: name and content."""
    yield 'nested groups', HEAD + b'*GROUP "g"{' * number + TRIANGLE % (b't', b'') + b'}' * number
    yield 'keys', (HEAD + b'*HELPEROBJECT{*NODE_NAME"a"*TM_ANIMATION{*CONTROL_POS_TRACK{' +
                   b''.join(b'*CONTROL_POS_SAMPLE %d %d 2 3\n' % (i, i % 7) for i in range(number)) + b'}}}')
    yield 'clones in a chain', HEAD + b''.join(
        b'*GEOMOBJECT{*NODE_NAME"c%d"*CLONE"c%d"}\n' % (i, i - 1) for i in range(number, 0, -1)) + TRIANGLE % (b'c0', b'')
