#include "tests/batch/BatchTesting.h"
#include "tests/support/FileContent.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace batch_testing {

std::string HelperScene(const std::string& name)
{
    return "*3DSMAX_QSAEXPORT 211\n*SCENE { *SCENE_FIRSTFRAME 0 *SCENE_LASTFRAME 10 "
           "*SCENE_FRAMESPEED 25 *SCENE_TICKSPERFRAME 160 }\n*HELPEROBJECT { *NODE_NAME \"" +
           name + "\" }\n";
}

std::string WallScene(const std::string& picture, int extraFaces)
{
    std::string faces = "*MESH_FACE 0: A: 0 B: 1 C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0\n"
                        "*MESH_FACE 1: A: 0 B: 2 C: 3 *MESH_SMOOTHING 1 *MESH_MTLID 0\n";
    for (int i = 0; i < extraFaces; ++i)
        faces += "*MESH_FACE " + std::to_string(i + 2) +
                 ": A: 1 B: 1 C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0\n";
    std::string map;
    std::string textureFaces;
    if (!picture.empty()) {
        map = "*MAP_DIFFUSE { *BITMAP \"" + picture +
              "\" *MAP_AMOUNT 1 *UVW_TILE_U \"Tile\" *UVW_TILE_V \"Tile\" }\n";
        textureFaces =
            "*MESH_NUMTVERTEX 4 *MESH_TVERTLIST { *MESH_TVERT 0 0 0 0 *MESH_TVERT 1 1 0 0 "
            "*MESH_TVERT 2 1 1 0 *MESH_TVERT 3 0 1 0 }\n*MESH_NUMTVFACES " +
            std::to_string(extraFaces + 2) +
            " *MESH_TFACELIST { *MESH_TFACE 0 0 1 2 *MESH_TFACE 1 0 2 3\n";
        for (int i = 0; i < extraFaces; ++i)
            textureFaces += "*MESH_TFACE " + std::to_string(i + 2) + " 1 1 2\n";
        textureFaces += "}\n";
    }
    return "*3DSMAX_QSAEXPORT 211\n*SCENE { }\n*MATERIAL_LIST { *MATERIAL_COUNT 1\n"
           "*MATERIAL 0 { *MATERIAL_NAME \"m\" *MATERIAL_TWOSIDED 1\n" +
           map +
           "} }\n*GEOMOBJECT { *NODE_NAME \"wall\" *MESH { *MESH_NUMVERTEX 4 *MESH_NUMFACES " +
           std::to_string(extraFaces + 2) +
           "\n*MESH_VERTEX_LIST { *MESH_VERTEX 0 -10 0 -10 *MESH_VERTEX 1 10 0 -10 "
           "*MESH_VERTEX 2 10 0 10 *MESH_VERTEX 3 -10 0 10 }\n*MESH_FACE_LIST { " +
           faces + "}\n" + textureFaces + "}\n*MATERIAL_REF 0 }\n";
}

std::string ColorPicture(unsigned color)
{
    std::string file(18, '\0');
    file[2] = 2; // true colour
    file[12] = file[14] = 8;
    file[16] = 32;
    file[17] = 8; // bits of alpha
    for (int i = 0; i < 64; ++i) {
        for (int shift = 0; shift < 24; shift += 8)
            file += static_cast<char>(color >> shift & 0xFF);
        file += static_cast<char>(0x99);
    }
    return file;
}

std::string BrokenScene()
{
    return "*3DSMAX_QSAEXPORT 211\n*GEOMOBJECT { *NODE_NAME \"b\" *MESH { *MESH_NUMVERTEX 3 "
           "*MESH_NUMFACES 1 *MESH_VERTEX_LIST { *MESH_VERTEX 1 0 0 0 } } }\n";
}

std::vector<std::string> FilesBelow(const std::string& directory)
{
    std::vector<std::string> names;
    if (!fs::exists(directory))
        return names;
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
        if (!entry.is_directory())
            names.push_back(entry.path().lexically_relative(directory).string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string ConvertedAlone(const std::string& directory, const std::string& leaf,
                           const std::string& options)
{
    const fs::path before = fs::current_path();
    const fs::path copy = fs::path(".alone") / directory;
    fs::remove_all(".alone");
    fs::create_directories(copy.parent_path());
    fs::copy(directory, copy, fs::copy_options::recursive);
    fs::current_path(copy);
    std::vector<std::string> arguments = {leaf};
    if (!options.empty())
        arguments.push_back(options);
    RunProgram(arguments);
    std::string bytes = FileContent(fs::path(leaf).replace_extension(".qsb"));
    fs::current_path(before);
    fs::remove_all(".alone");
    return bytes;
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

} // namespace batch_testing
