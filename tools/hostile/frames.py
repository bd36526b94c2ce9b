"""Scenes whose frames cover far more pixels than any honest one."""

import struct

from .cases import MEBIBYTE, Case, fill
from .texts import HEAD

#: In the log once, and no other line of it twice.
WARNING = b'The rest of the frame was not drawn because it takes too many pixels'

WALL = (b'*GEOMOBJECT{*NODE_NAME"s"%s*MESH{*MESH_NUMVERTEX 3 *MESH_NUMFACES 1 *MESH_VERTEX_LIST{*MESH_VERTEX 0 -900 50 '
        b'-900 *MESH_VERTEX 1 2900 50 -900 *MESH_VERTEX 2 -900 50 2900}*MESH_FACE_LIST{*MESH_FACE 0: A: 0 B: 1 C: 2}}}')
CAMERA = (b'*CAMERAOBJECT{*NODE_NAME"c"*TARGET_NODE"t"}*HELPEROBJECT{*NODE_NAME"t"*NODE_TM{*TM_ROW0 1 0 0 *TM_ROW1 0 1 0 '
          b'*TM_ROW2 0 0 1 *TM_ROW3 0 9 0 *TM_POS 0 9 0 *TM_SCALE 1 1 1}}')
MATERIAL = b'*MATERIAL_LIST{*MATERIAL 0{%s*MATERIAL_TWOSIDED 1}}'
CLONE = b'*GEOMOBJECT{*NODE_NAME"%d"*MATERIAL_REF 0 *CLONE"s"}'

LONG_SHADER = b'''
technique T { pass P { PixelShader = asm
{
    ps_2_x
    defi i0, 255, 0, 0, 0
    dcl v0
    mov r0, v0
    rep i0
        rep i0
            add r0, r0, c1
        endrep
    endrep
    mov oC0, r0
}; } }
'''


def frame_cases():
    walls = HEAD + MATERIAL % b'' + CAMERA + WALL % b'*MATERIAL_REF 0 '
    yield Case('walls', 'a.qsa', {'a.qsa': fill(lambda i: CLONE % i, walls)})
    mapped = HEAD + MATERIAL % b'*MAP_REFLECT{*BITMAP"p.bmp"}*MAP_DIFFUSE{*BITMAP"p.bmp"}' + CAMERA + WALL % b'*MATERIAL_REF 0 '
    picture = struct.pack('<2sIHHIIiiHHIIiiII', b'BM', 54 + 64 * 64 * 3, 0, 0, 54, 40, 64, 64, 1, 24, 0, 0, 0, 0, 0, 0)
    yield Case('walls with maps', 'a.qsa', {'a.qsa': fill(lambda i: CLONE % i, mapped), 'p.bmp': picture + bytes(range(
        256)) * 48})
    shaded = HEAD + MATERIAL % b"*MATERIAL_NAME \"shader='e.fx'\"" + CAMERA + WALL % b'*MATERIAL_REF 0 '
    yield Case('walls with shaders', 'a.qsa', {'a.qsa': fill(lambda i: CLONE % i, shaded, size=MEBIBYTE // 16),
                                               'e.fx': LONG_SHADER})


def check_frames(checks):
    for case in frame_cases():
        directory = checks.fresh(case)
        result = checks.run([checks.programs / 'qsa2qsb', case.main], directory, frames=True, most_seconds=300)
        log = directory / 'logfile.txt'
        said = log.read_bytes().count(WARNING) if log.exists() else 0
        drawn = (directory / 'frames/a.qsa.png').exists()
        checks.check(f'frame of {case.name}', result['status'] == 1 and said == 1 and drawn,
                     f"status {result['status']}, {said} warnings, {result['seconds']:.1f} s, {result['bytes'] >> 20} MiB")
        checks.remember('frame', case.name, result)
