#include "tests/app/FrameScene.h"

namespace frame_scene {

namespace {

char Byte(unsigned value)
{
    return static_cast<char>(static_cast<unsigned char>(value));
}

} // namespace

std::string Tga(unsigned side, const std::function<uint32_t(unsigned, unsigned)>& pixelAt)
{
    // True colour, no palette, 32 bits of which 8 are alpha, from the top left.
    std::string file(18, '\0');
    file[2] = Byte(2);
    file[12] = file[14] = Byte(side);
    file[16] = Byte(32);
    file[17] = Byte(0x28);
    for (unsigned y = 0; y < side; ++y) {
        for (unsigned x = 0; x < side; ++x) {
            const uint32_t pixel = pixelAt(x, y);
            for (int shift = 0; shift < 32; shift += 8)
                file += Byte(pixel >> shift & 0xFF);
        }
    }
    return file;
}

std::string RedAndBlue()
{
    return Tga(64, [](unsigned x, unsigned) { return x < 32 ? 0xFFFF0000 : 0xFF0000FF; });
}

std::string Map(const char* kind, const char* picture, const char* values)
{
    return std::string("*MAP_") + kind + " { *BITMAP \"" + picture + "\" *MAP_AMOUNT 1 " + values +
           " *UVW_TILE_U \"Tile\" *UVW_TILE_V \"Tile\" }\n";
}

std::string Wall(const std::string& maps, const std::string& nodes, const char* scene)
{
    return std::string("*3DSMAX_QSAEXPORT 211\n*SCENE { ") + scene +
           " }\n*MATERIAL_LIST { *MATERIAL_COUNT 1\n*MATERIAL 0 { *MATERIAL_NAME \"m\" "
           "*MATERIAL_TWOSIDED 1\n" +
           maps +
           "} }\n"
           "*GEOMOBJECT { *NODE_NAME \"wall\" *MESH { *MESH_NUMVERTEX 4 *MESH_NUMFACES 2\n"
           "*MESH_VERTEX_LIST { *MESH_VERTEX 0 -10 0 -10 *MESH_VERTEX 1 10 0 -10 "
           "*MESH_VERTEX 2 10 0 10 *MESH_VERTEX 3 -10 0 10 }\n"
           "*MESH_FACE_LIST { *MESH_FACE 0: A: 0 B: 1 C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0\n"
           "*MESH_FACE 1: A: 0 B: 2 C: 3 *MESH_SMOOTHING 1 *MESH_MTLID 0 }\n"
           "*MESH_NUMTVERTEX 4 *MESH_TVERTLIST { *MESH_TVERT 0 0 0 0 *MESH_TVERT 1 1 0 0 "
           "*MESH_TVERT 2 1 1 0 *MESH_TVERT 3 0 1 0 }\n"
           "*MESH_NUMTVFACES 2 *MESH_TFACELIST { *MESH_TFACE 0 0 1 2 *MESH_TFACE 1 0 2 3 } }\n"
           "*MATERIAL_REF 0 }\n" +
           nodes;
}

} // namespace frame_scene
