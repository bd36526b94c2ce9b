#include "qsa/QSA_Keywords.h"

#include <cstring>
#include <map>
#include <string>

#include <gtest/gtest.h>

namespace {

struct Row {
    const char* word;
    int32_t code;
};

// The codes of the format, written as numbers: the meaning of a keyword must not depend on its
// place.
constexpr Row kRows[] = {
    {"3DSMAX_QSAEXPORT", 0x5F},
    {"SCENE", 0x1},
    {"MATERIAL_LIST", 0x2},
    {"GEOMOBJECT", 0x3},
    {"GROUP", 0x4},
    {"CAMERAOBJECT", 0x6},
    {"BONEOBJECT", 0x7},
    {"HELPEROBJECT", 0x8},
    {"TARGETOBJECT", 0x9},
    {"LIGHTOBJECT", 0xA},
    {"ATMOSPHERIC", 0xB},
    {"SCENE_BACKGROUND_STATIC", 0x11},
    {"SCENE_AMBIENT_STATIC", 0x21},
    {"SCENE_FIRSTFRAME", 0x31},
    {"SCENE_LASTFRAME", 0x41},
    {"SCENE_FRAMESPEED", 0x51},
    {"SCENE_TICKSPERFRAME", 0x61},
    {"SCENE_ENVMAP", 0x71},
    {"SCENE_SOUNDFILE", 0x81},
    {"SCENE_SCRIPTFILE", 0x91},
    {"MATERIAL_COUNT", 0x12},
    {"MATERIAL", 0x22},
    {"MATERIAL_NAME", 0x122},
    {"MATERIAL_DIFFUSE", 0x322},
    {"MATERIAL_AMBIENT", 0x422},
    {"MATERIAL_SPECULAR", 0x522},
    {"MATERIAL_SHINESTRENGTH", 0x622},
    {"MATERIAL_SHINE", 0x722},
    {"NUMSUBMTLS", 0x822},
    {"SUBMATERIAL", 0x922},
    {"MATERIAL_TRANSPARENCY", 0xA22},
    {"MATERIAL_TWOSIDED", 0xB22},
    {"MATERIAL_SELFILLUM_COLOR", 0xE22},
    {"MATERIAL_TRANSPARENCY_TYPE", 0x11022},
    {"MAP_DIFFUSE", 0x222},
    {"MAP_REFLECT", 0xC22},
    {"MAP_BUMP", 0xD22},
    {"MATERIAL_ANIMATION", 0xF22},
    {"BITMAP", 0x1222},
    {"MAP_AMOUNT", 0x9222},
    {"UVW_U_OFFSET", 0x2222},
    {"UVW_V_OFFSET", 0x3222},
    {"UVW_U_TILING", 0x4222},
    {"UVW_V_TILING", 0x5222},
    {"UVW_U_ANGLE", 0x6222},
    {"UVW_V_ANGLE", 0x7222},
    {"UVW_W_ANGLE", 0x8222},
    {"UVW_TILE_U", 0x11122},
    {"UVW_TILE_V", 0x11222},
    {"TIME_STARTFRAME", 0xC222},
    {"TIME_PLAYBACKRATE", 0xD222},
    {"TIME_ENDCONDITION", 0xE222},
    {"MAP_ANIMATION", 0xA222},
    {"MAP_ATTRIBUTE", 0xB222},
    {"CONTROL_FLOAT_BEZIER", 0x13F},
    {"CONTROL_BEZIER_FLOAT_KEY", 0x113F},
    {"MATERIAL_ATTRIBUTE", 0x10F22},
    {"CONTROL_COLOR_BEZIER", 0x45},
    {"CONTROL_COLOR_LINEAR", 0x55},
    {"CONTROL_BEZIER_POINT3_KEY", 0x145},
    {"CONTROL_POINT3_KEY", 0x155},
    {"CONTROL_FLOAT_LINEAR", 0x23F},
    {"CONTROL_FLOAT_KEY", 0x123F},
    {"NODE_NAME", 0x12F},
    {"NODE_PARENT", 0x22F},
    {"NODE_VISIBLE", 0x32F},
    {"NODE_TM", 0x1F},
    {"PIVOT_TM", 0x4F},
    {"TM_ANIMATION", 0x5},
    {"MESH", 0x23},
    {"CLONE", 0x43},
    {"MATERIAL_REF", 0x32},
    {"WIREFRAME_COLOR", 0x33},
    {"TM_ROW0", 0x11F},
    {"TM_ROW1", 0x21F},
    {"TM_ROW2", 0x31F},
    {"TM_ROW3", 0x41F},
    {"TM_POS", 0x51F},
    {"TM_ROTAXIS", 0x61F},
    {"TM_ROTANGLE", 0x71F},
    {"TM_SCALE", 0x81F},
    {"CONTROL_POS_BEZIER", 0x15},
    {"CONTROL_POS_TRACK", 0x15},
    {"CONTROL_ROT_TCB", 0x25},
    {"CONTROL_ROT_TRACK", 0x25},
    {"CONTROL_ROT_LINEAR", 0x25},
    {"CONTROL_SCALE_BEZIER", 0x35},
    {"CONTROL_SCALE_TRACK", 0x35},
    {"CONTROL_POS_SAMPLE", 0x115},
    {"CONTROL_BEZIER_POS_KEY", 0x215},
    {"CONTROL_ROT_SAMPLE", 0x125},
    {"CONTROL_ROT_KEY", 0x125},
    {"CONTROL_TCB_ROT_KEY", 0x225},
    {"CONTROL_SCALE_SAMPLE", 0x135},
    {"CONTROL_BEZIER_SCALE_KEY", 0x235},
    {"MESH_NUMVERTEX", 0x123},
    {"MESH_NUMFACES", 0x223},
    {"MESH_VERTEX_LIST", 0x323},
    {"MESH_VERTEX", 0x1323},
    {"MESH_FACE_LIST", 0x423},
    {"MESH_FACE", 0x1423},
    {"MESH_SMOOTHING", 0x2423},
    {"MESH_MTLID", 0x3423},
    {"MESH_NUMTVERTEX", 0x523},
    {"MESH_TVERTLIST", 0x623},
    {"MESH_TVERT", 0x1623},
    {"MESH_NUMTVFACES", 0x723},
    {"MESH_TFACELIST", 0x823},
    {"MESH_TFACE", 0x1823},
    {"MESH_WEIGHTS", 0x923},
    {"MESH_INIT_TM", 0x1923},
    {"BONE_WEIGHT", 0x2923},
    {"BOUNDINGBOX_MIN", 0xA23},
    {"BOUNDINGBOX_MAX", 0xB23},
    {"BONE_NAME", 0x12923},
    {"BONE_INIT_TM", 0x22923},
    {"INDEX_WEIGHT", 0x32923},
    {"TARGET_NODE", 0x26},
    {"CAMERA_SETTINGS", 0x16},
    {"CAMERA_FOV", 0x116},
    {"LIGHT_TYPE", 0x3A},
    {"LIGHT_USELIGHT", 0x2A},
    {"LIGHT_SETTINGS", 0x1A},
    {"LIGHT_COLOR", 0x11A},
    {"LIGHT_INTENS", 0x21A},
    {"LIGHT_ASPECT", 0x31A},
    {"LIGHT_HOTSPOT", 0x41A},
    {"LIGHT_FALLOFF", 0x51A},
    {"LIGHT_TDIST", 0x61A},
    {"STDFOG", 0x1B},
    {"FOG_COLOR", 0x11B},
    {"FOG_NEAR", 0x21B},
    {"FOG_FAR", 0x31B},
    {"FOG_DENSITY", 0x41B},
};

int32_t CodeOf(const std::string& word)
{
    return static_cast<int32_t>(ClassifyKeyword(word.data(), static_cast<int32_t>(word.size())));
}

} // namespace

TEST(QSA_Keywords, EachKeywordHasItsCode)
{
    static_assert(std::size(kRows) == kKeywordNumber);
    for (const Row& row : kRows)
        EXPECT_EQ(CodeOf(row.word), row.code) << row.word;
}

TEST(QSA_Keywords, SmallLettersAreTheSameAsCapitals)
{
    for (const Row& row : kRows) {
        std::string word = row.word;
        for (char& c : word)
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
        EXPECT_EQ(CodeOf(word), row.code) << word;
    }
}

TEST(QSA_Keywords, KeywordMatchesOnlyAsAWhole)
{
    std::map<std::string, int32_t> known;
    for (const Row& row : kRows)
        known[row.word] = row.code;
    for (const Row& row : kRows) {
        const std::string longer = std::string(row.word) + 'S';
        const std::string shorter(row.word, std::strlen(row.word) - 1);
        EXPECT_EQ(CodeOf(longer), known.count(longer) ? known[longer] : 0) << longer;
        EXPECT_EQ(CodeOf(shorter), known.count(shorter) ? known[shorter] : 0) << shorter;
    }
}

TEST(QSA_Keywords, OtherWordsAreUnknown)
{
    const std::string words[] = {"",
                                 " ",
                                 "*",
                                 "MESH ",
                                 std::string("MESH\0", 5),
                                 "SCENES",
                                 "GROU\xD0",
                                 "{",
                                 std::string(127, 'A'),
                                 std::string(26, 'M'),
                                 "MATERIAL-LIST"};
    for (const std::string& word : words)
        EXPECT_EQ(CodeOf(word), 0) << word;
    // Only ASCII letters have capitals: bytes that differ from a letter only in bit 0x80 are
    // different.
    EXPECT_EQ(CodeOf("\xCD"
                     "ESH"),
              0);
}
