"""Binary scenes of 1 MiB, written by the rules of docs/qsb-format.md."""

import struct

from .cases import MEBIBYTE, Case, damage, fill

IDENTITY = struct.pack('<16f', 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1)
EXTREMES = (0, 1, -1, 2, 255, 256, 65535, 65536, 1 << 20, 100000000, 0x7FFFFFFF, -0x80000000)


def i32(*numbers):
    return struct.pack(f'<{len(numbers)}i', *numbers)


def text(value):
    return i32(len(value)) + value


def vector_chain(count):
    """Position or scale keys, and their number before them."""
    keys = b''.join(struct.pack('<fH9fB', i, 1, *([i % 5] * 9), i + 1 < count) for i in range(count))
    return i32(count) + keys


def rotation_chain(count):
    keys = b''.join(struct.pack('<fH21fB', i, 2, 1, 0, 0, *([0.1] * 18), i + 1 < count) for i in range(count))
    return i32(count) + keys


NO_KEYS = i32(0)


def node(kind, name, parent=b'', positions=NO_KEYS, rotations=NO_KEYS, scales=NO_KEYS):
    return b''.join((struct.pack('<Hi', 0x1234, kind), IDENTITY, struct.pack('<12f', 1, 1, 1, 0, 0, 0, 1, 1, 1, 0, 0, 0),
                     struct.pack('<f', 0), struct.pack('<12f', 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0), text(name),
                     text(parent), b'\x0f', positions, rotations, scales, struct.pack('<if', 0, 100)))


def target(kind, name, target_name=b'', parent=b''):
    return node(kind, name, parent) + text(target_name)


def camera(name, target_name=b'', parent=b''):
    return target(8, name, target_name, parent) + struct.pack('<f', 0.7)


def light(name, parent=b'', kind=1):
    return target(32, name, b'', parent) + struct.pack('<iiI25f', 1, 1, kind, *([1] * 25))


CLIP = struct.pack('<i10f', 3, 2, *([0] * 3), *([-1] * 3), *([1] * 3))


def track(keys=0, floats=4):
    content = b''.join(struct.pack(f'<{floats}f', i, *([0.5] * (floats - 1))) for i in range(keys))
    return struct.pack('<iiBBf', keys, 1, 0, 0, 0) + content


def material(keys=0, effect=b'', transparent=0):
    parts = [struct.pack('<16f', *([1] * 16)), struct.pack('<fiiiff', 0, 0, transparent, -1, 1, 0)]
    parts += [track(keys, 13)] * 4 + [track(keys, 4), bytes((0, 0, 1, 1, 1)), i32(0), text(effect)]
    if effect:
        parts.append(bytes(16))
    return b''.join(parts)


def slot(file=b'', keys=0, kind=1):
    return track(keys) * 5 + struct.pack('<5f', 0, 0, 1, 1, 0) + text(file) + struct.pack('<if', kind, 1)


def texture(*slots):
    return struct.pack('<IffIfI', 0, 0, 0.2, 0, 0, 1) + b''.join(slots) + slot() * (4 - len(slots))


def geometry(vertices=3, faces=1, fvf=0x12, attributes=1):
    points = b''.join(struct.pack('<3f3h', i % 7, i % 5, i % 3, 0, 0, 32767) for i in range(vertices))
    indices = b''.join(struct.pack('<3H', i % vertices, (i + 1) % vertices, (i + 2) % vertices) for i in range(faces))
    return struct.pack('<iiI', vertices, faces, fvf) + points + indices + b''.join(
        struct.pack('<H', i * attributes // faces) for i in range(faces))


def mesh(name, source=b'', parent=b'', materials=(), textures=(), shape=None, bones=(), bone_count=None):
    """With a source, a clone. The number of bones may be a wrong one."""
    parts = [node(1, name, parent), CLIP, i32(0, 1, -1, len(materials)), *materials, *textures, text(source),
             i32(len(bones) if bone_count is None else bone_count)]
    if not source:
        parts.append(geometry() if shape is None else shape)
    return b''.join([*parts, i32(-1), *bones])


def bone(name):
    return text(name) + IDENTITY + IDENTITY


PLAIN = ((material(),), (texture(),))


def scene(meshes=b'', cameras=b'', objects=b'', lights=b'', counts=(0, 0, 0, 0), background=b'', version=106):
    """The lists are records one after the other; `counts` says how many."""
    settings = struct.pack('<11iii3fi', 0, 0, 0, -2, -2, 0, 1, 0, 1, 0, 0, 1, 1, 0, 1, 0.5, 1)
    start = struct.pack('<3sB3f', b'QSB', version, 30, 0, 100) + text(b'') + text(b'')
    return b''.join((start, node(0, b'scene'), CLIP, i32(-0x1000000, -0x1000000),
                     b'\1' + background if background else b'\0', settings,
                     i32(counts[0]), meshes, i32(counts[1]), cameras, i32(counts[2]), objects, i32(counts[3]), lights))


def listed(unit, place, before=b'', count_before=0, **more):
    """A scene of 1 MiB whose list `place` is `before` and then as many units as fit."""
    empty = len(scene(**more))
    size = MEBIBYTE - empty - len(before)
    parts, number = [], 0
    while True:
        part = unit(number) if callable(unit) else unit
        size -= len(part)
        if size < 0:
            break
        parts.append(part)
        number += 1
    counts = [0, 0, 0, 0]
    counts[('meshes', 'cameras', 'objects', 'lights').index(place)] = number + count_before
    return scene(**{place: before + b''.join(parts), 'counts': counts}, **more)


def many_records():
    yield 'objects', listed(lambda i: node(4, b'%d' % i, b'%d' % (i - 1)), 'objects')
    yield 'objects-named-alike', listed(node(4, b'a', b'a'), 'objects')
    yield 'objects-without-parent', listed(lambda i: node(4, b'a', b'p%d' % i), 'objects')
    yield 'cameras', listed(lambda i: camera(b'%d' % i, b'%d' % (i + 1), b'%d' % (i - 1)), 'cameras')
    yield 'lights', listed(lambda i: light(b'%d' % i, b'%d' % (i - 1)), 'lights')
    yield 'lights-of-no-type', listed(lambda i: light(b'%d' % i, b'x', i), 'lights')
    yield 'meshes', listed(lambda i: mesh(b'%d' % i, b'', b'%d' % (i - 1), *PLAIN), 'meshes')
    yield 'meshes-without-materials', listed(lambda i: mesh(b'%d' % i), 'meshes')
    yield 'transparent', listed(lambda i: mesh(b'%d' % i, b'', b'', [material(transparent=1)], [texture()]), 'meshes')
    source = mesh(b's', b'', b'', *PLAIN)
    for name, unit in (('clones', lambda i: mesh(b'%d' % i, b's')), ('clones-named-alike', lambda i: mesh(b'a', b's')),
                       ('clone-chain', lambda i: mesh(b'%d' % i, b'%d' % (i - 1) if i else b's')),
                       ('clone-chain-back', lambda i: mesh(b'%d' % (9999 - i), b'%d' % (9998 - i))),
                       ('clone-cycle', lambda i: mesh(b'%d' % i, b'%d' % (i ^ 1))),
                       ('clones-of-nothing', lambda i: mesh(b'%d' % i, b'x'))):
        yield name, listed(unit, 'meshes', source, 1)


def multiplied():
    """Clones of a mesh of which each needs a copy of something."""
    for count in (250, 2000, 4000):
        many = mesh(b's', b'', b'', *PLAIN, bones=[bone(b'b%d' % i) for i in range(count)])
        yield f'clones-of-{count}-bones', listed(lambda i: mesh(b'%d' % i, b's'), 'meshes', many, 1)
    faces = mesh(b's', b'', b'', *PLAIN, shape=geometry(30000, 50000))
    yield 'clones-of-50000-faces', listed(lambda i: mesh(b'%d' % i, b's'), 'meshes', faces, 1)
    parts = mesh(b's', b'', b'', *PLAIN, shape=geometry(3, 60000, 0x12, 60000))
    yield 'attributes-without-materials', scene(parts, counts=(1, 0, 0, 0))
    yield 'clones-of-attributes', listed(lambda i: mesh(b'%d' % i, b's'), 'meshes', mesh(
        b's', b'', b'', [material()] * 600, [texture()] * 600, geometry(3, 600, 0x12, 600)), 1)


def long_lists():
    half = 1600
    yield 'materials', scene(mesh(b's', b'', b'', [material()] * half, [texture()] * half), counts=(1, 0, 0, 0))
    yield 'effects', scene(mesh(b's', b'', b'', [material(effect=b'e%d' % i) for i in range(half)], [texture()] * half),
                           counts=(1, 0, 0, 0))
    yield 'pictures', scene(mesh(b's', b'', b'', [material()] * 1000, [
        texture(*(slot(b'%d-%d.png' % (i, s)) for s in range(4))) for i in range(1000)]), counts=(1, 0, 0, 0))
    yield 'bones', scene(mesh(b's', b'', b'', *PLAIN, bones=[bone(b'%d' % i) for i in range(7000)]), counts=(1, 0, 0, 0))
    yield 'colour-keys', scene(mesh(b's', b'', b'', [material(4600)], [texture()]), counts=(1, 0, 0, 0))
    yield 'map-keys', scene(mesh(b's', b'', b'', [material()], [texture(slot(b'a', 13000))]), counts=(1, 0, 0, 0))
    yield 'positions', scene(objects=node(4, b'a', positions=vector_chain(24000)), counts=(0, 0, 1, 0))
    yield 'rotations', scene(objects=node(4, b'a', rotations=rotation_chain(11000)), counts=(0, 0, 1, 0))
    yield 'scales', scene(objects=node(4, b'a', scales=vector_chain(24000)), counts=(0, 0, 1, 0))
    yield 'name', scene(objects=node(4, b'a' * 1040000), counts=(0, 0, 1, 0))
    yield 'background', scene(background=texture(*(slot(b'b%d' % s, 13000 // 4) for s in range(4))))
    for fvf in (0x12, 0x112, 0x1118, 0x111E, 0x812):
        yield f'vertices-{fvf:x}', scene(mesh(b's', b'', b'', *PLAIN, shape=struct.pack('<iiI', 20000, 1, fvf) + bytes(
            1040000)), counts=(1, 0, 0, 0))


def small_scene(version=106):
    """Some of everything, to damage."""
    shape = geometry(50, 90, 0x12, 2)
    meshes = (mesh(b'm', b'', b'o', [material(3), material(0, b'none.fx')], [texture(slot(b'a.png', 3)), texture()],
                   shape, [bone(b'm'), bone(b'o')]) + mesh(b'c', b'm', b'm', *PLAIN))
    return scene(meshes, camera(b'cam', b'o'), node(4, b'o', b'', vector_chain(5), rotation_chain(5), vector_chain(5)),
                 light(b'l'), (2, 1, 1, 1), texture(slot(b'sky.png')), version)


def damaged(random, count):
    """A small scene, damaged, with noise behind it up to 1 MiB: counts may reach into it."""
    for i in range(count):
        version = random.choice((100, 101, 102, 103, 104, 105, 106))
        content = bytearray(small_scene(version))
        for _ in range(random.choice((1, 2, 5))):
            at = random.randrange(16, len(content) - 4)
            if random.random() < 0.5:
                content[at:at + 4] = i32(random.choice(EXTREMES))
            else:
                content = bytearray(damage(bytes(content), random) or b'QSB\x6a')
                content += bytes(max(0, 32 - len(content)))
        tail = random.choice((b'', bytes(64), random.randbytes(64), struct.pack('<i', 1) * 16))
        content += (tail * (MEBIBYTE // 64))[:MEBIBYTE - len(content)]
        yield f'damaged-{i}', bytes(content)


def noise(random):
    for name, unit in (('zeros', bytes(64)), ('ones', b'\1\0\0\0' * 16), ('all', b'\xff' * 64)):
        for version in (99, 100, 103, 106, 107):
            yield f'only-{name}-{version}', fill(unit, b'QSB' + bytes((version,)))
    yield 'noise', b'QSBj' + random.randbytes(MEBIBYTE - 4)


def binary_cases(random, count):
    for make in (many_records(), multiplied(), long_lists(), noise(random), damaged(random, count)):
        for name, content in make:
            yield Case(f'binary-{name}', 'a.qsb', {'a.qsb': content})


def large_binaries(number):
    yield 'clones in a binary chain', scene(b''.join(
        mesh(b'c%d' % i, b'c%d' % (i - 1)) for i in range(number, 0, -1)) + mesh(b'c0', b'', b'', *PLAIN),
        counts=(number + 1, 0, 0, 0))
    yield 'binary keys', scene(objects=node(4, b'a', positions=vector_chain(number)), counts=(0, 0, 1, 0))
