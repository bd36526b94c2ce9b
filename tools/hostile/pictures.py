"""Pictures whose headers promise much, and lists of frames."""

import struct
import zlib

from .cases import MEBIBYTE, Case, damage, fill
from .texts import HEAD, TRIANGLE

MAPPED = (HEAD + b'*MATERIAL_LIST{*MATERIAL 0{*MAP_DIFFUSE{*BITMAP"%s"}}}' + TRIANGLE % (b'm', b'*MATERIAL_REF 0'))


def chunk(kind, content):
    return struct.pack('>I', len(content)) + kind + content + struct.pack('>I', zlib.crc32(kind + content))


def png(width, height, depth=8, colour=6, body=None, interlaced=0):
    packer = zlib.compressobj(9)
    bits = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}[colour] * depth
    row = bytes(1 + (width * bits + 7) // 8)
    packed = b''.join(packer.compress(row) for _ in range(height)) + packer.flush() if body is None else body
    return b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', width, height, depth, colour, 0, 0, interlaced)) + (
        chunk(b'PLTE', bytes(768)) if colour == 3 else b'') + chunk(b'IDAT', packed) + chunk(b'IEND', b'')


def dds(width, height, code=b'DXT1', levels=1, body=b'', caps2=0, depth=0):
    return struct.pack('<4s7I44xII4sIIIIIIIII4x', b'DDS ', 124, 0x1007 | (0x20000 if levels > 1 else 0), height, width, 0,
                       depth, levels, 32, 4, code, 0, 0, 0, 0, 0, 0x1000, caps2, 0, 0) + body


def tga(width, height, kind=10, depth=32, body=b''):
    return struct.pack('<BBB5xHHHHBB', 0, 0, kind, 0, 0, width, height, depth, 0) + body


def bmp(width, height, bits=8, packing=1, body=b''):
    return struct.pack('<2sIHHIIiiHHIIiiII', b'BM', 54 + 1024 + len(body), 0, 0, 1078, 40, width, height, 1, bits, packing,
                       len(body), 0, 0, 0, 0) + bytes(1024) + body


def bombs():
    rest = bytes(MEBIBYTE - 2048)
    yield 'png', png(4096, 4096)
    yield 'png-16-bits', png(4096, 4096, 16, 6)
    yield 'png-interlaced', png(2048, 2048, interlaced=1)
    yield 'png-side', png(16384, 1024, 1, 0)
    yield 'png-too-wide', png(65536, 1, 8, 0)
    yield 'png-no-data', png(16384, 16384, body=zlib.compress(b''))
    yield 'png-noise', png(16384, 16384, body=rest)
    yield 'png-texts', b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', 1, 1, 8, 6, 0, 0, 0)) + fill(
        chunk(b'zTXt', b'a\0\0' + zlib.compress(bytes(100000))), size=MEBIBYTE - 100)
    yield 'dds', dds(16384, 16384, body=rest)
    yield 'dds-block', dds(1024, 1024, b'DXT1', 11, rest)
    yield 'dds-volume', dds(2048, 2048, b'DXT1', 1, rest, 0x200000, 2048)
    yield 'dds-cube', dds(16384, 16384, b'DXT5', 15, rest, 0xFE00)
    yield 'tga-runs', tga(8192, 8192, body=fill(b'\xff\1\2\3\4'))
    yield 'tga-no-data', tga(16384, 16384)
    yield 'tga-plain', tga(16384, 16384, 2, 32, rest)
    yield 'bmp-runs', bmp(4096, 4096, body=fill(b'\xff\1', size=MEBIBYTE - 1078))
    yield 'bmp-no-data', bmp(16384, 16384)
    yield 'bmp-upside-down', bmp(16384, -0x80000000, 24, 0, rest)
    yield 'ppm', b'P6 16384 16384 255\n' + rest
    yield 'ppm-comments', fill(b'# a\n', b'P6\n')
    yield 'ppm-digits', fill(b'1', b'P6 ')
    yield 'jpeg', b'\xff\xd8\xff\xc0\0\x11\x08\x40\0\x40\0\3\1\x11\0\2\x11\0\3\x11\0' + rest
    yield 'jpeg-markers', fill(b'\xff\xfe\0\2', b'\xff\xd8')


def frame_lists():
    yield 'names', fill(lambda i: b'%d.png\n' % i)
    yield 'counts', fill(b'p.png 4096\n')
    yield 'count', b'p.png 2147483647\n'
    yield 'one-line', fill(b'a')
    yield 'blanks', fill(b' \n')
    yield 'itself', fill(b'a.ifl\n')


def picture_cases(root, random, count):
    for name, content in bombs():
        yield Case(f'picture-{name}', 'a.qsa', {'a.qsa': MAPPED % b'p.png', 'p.png': content}, 'picture')
    small = png(16, 16)
    for name, content in frame_lists():
        yield Case(f'frames-{name}', 'a.qsa', {'a.qsa': MAPPED % b'a.ifl', 'a.ifl': content, 'p.png': small})
    subs = b''.join(b'*SUBMATERIAL %d{*MAP_DIFFUSE{*BITMAP"a.ifl"}}' % i for i in range(8000))
    faces = b''.join(b'*MESH_FACE %d: A:0 B:1 C:2 *MESH_MTLID %d\n' % (i, i) for i in range(8000))
    many = (HEAD + b'*MATERIAL_LIST{*MATERIAL 0{' + subs + b'}}*GEOMOBJECT{*NODE_NAME"s"*MATERIAL_REF 0 *MESH{'
            b'*MESH_NUMVERTEX 3 *MESH_NUMFACES 8000 *MESH_VERTEX_LIST{*MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 0 '
            b'*MESH_VERTEX 2 0 1 0}*MESH_FACE_LIST{' + faces + b'}}}')
    yield Case('frames-of-8000-materials', 'a.qsa', {'a.qsa': many, 'a.ifl': b'p.png 4096\n', 'p.png': small})
    yield Case('picture-of-8000-materials', 'a.qsa', {'a.qsa': many.replace(b'a.ifl', b'p.png'), 'p.png': small})
    pictures = sorted(path for path in (root / 'examples').iterdir() if path.suffix in ('.png', '.bmp', '.tga'))
    for i in range(count):
        content = damage(random.choice(pictures).read_bytes(), random)
        yield Case(f'damaged-picture-{i}', 'a.qsa', {'a.qsa': MAPPED % b'p.png', 'p.png': content}, 'picture')
