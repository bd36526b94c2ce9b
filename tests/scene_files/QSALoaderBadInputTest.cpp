// Damaged texts: each must end in a scene or a documented error.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <utility>

#include "base/Log.h"
#include "gfx/KRE_Gfx.h"
#include "tests/qsa/QSATesting.h"
#include "tests/support/HostCost.h"
#include "tests/support/TreePaths.h"

namespace {

/// A text with every keyword that has an effect.
std::string Everything()
{
    MeshText mesh = Cube({"1", "1,2", "", "3", "1", "300"});
    for (int i = 0; i < 6; ++i)
        mesh.faces[static_cast<size_t>(i)].material = i;
    mesh.tVertices = {{0, 0}, {1, 0}, {0, 1}};
    mesh.tFaces.assign(12, {0, 1, 2});
    mesh.weights =
        "*MESH_INIT_TM { *TM_ROW3 0 0 1 } *BONE_WEIGHT { *BONE_NAME \"bone\" *BONE_INIT_TM { "
        "*TM_ROW3 1 0 0 } *INDEX_WEIGHT 0 0.5 *INDEX_WEIGHT 1 0.25 } *BONE_WEIGHT { "
        "*BONE_NAME \"help\" *BONE_INIT_TM { } *INDEX_WEIGHT 0 0.5 } ";
    const std::string transform =
        "*NODE_TM { *TM_ROW0 1 0 0 *TM_ROW1 0 1 0 *TM_ROW2 0 0 1 *TM_ROW3 1 2 3 *TM_POS 1 2 3 "
        "*TM_ROTAXIS 0 0 1 *TM_ROTANGLE 0 *TM_SCALE 1 1 1 } *PIVOT_TM { *TM_ROW3 0 0 1 } ";
    const std::string animation =
        "*TM_ANIMATION { *CONTROL_POS_BEZIER { *CONTROL_BEZIER_POS_KEY 0 1 2 3 4 5 6 7 8 9 "
        "*CONTROL_POS_SAMPLE 160 1 1 1 } *CONTROL_ROT_TCB { *CONTROL_TCB_ROT_KEY 0 0 0 1 1 0 0 0 0 0 "
        "*CONTROL_ROT_SAMPLE 160 0 0 1 7 *CONTROL_ROT_KEY 320 0 0 1 1 } *CONTROL_SCALE_TRACK { "
        "*CONTROL_SCALE_SAMPLE 0 1 1 1 *CONTROL_BEZIER_SCALE_KEY 160 2 2 2 } } ";
    mesh.more = "*NODE_PARENT \"help\" *NODE_VISIBLE 1 *MATERIAL_REF 0 *WIREFRAME_COLOR 1 0 0 " +
                transform + animation;
    const std::string map =
        " { *BITMAP \"none.bmp\" *MAP_AMOUNT 0.5 *UVW_U_OFFSET 0.5 *UVW_V_OFFSET 0.5 "
        "*UVW_U_TILING 2 *UVW_V_TILING 2 *UVW_U_ANGLE 1 *UVW_V_ANGLE 1 *UVW_W_ANGLE "
        "1 *UVW_TILE_U \"Mirror\" *UVW_TILE_V \"Tile\" *TIME_STARTFRAME 1 "
        "*TIME_PLAYBACKRATE 1 *TIME_ENDCONDITION \"hold\" *MAP_ANIMATION { "
        "*MAP_ATTRIBUTE \"TileU\" *CONTROL_FLOAT_BEZIER { *CONTROL_BEZIER_FLOAT_KEY "
        "0 1 2 3 } } } ";
    const std::string material =
        "*MATERIAL_NAME \"m shader='s' fParam1='1' vParam1='1,2,3'\" *MATERIAL_DIFFUSE 1 1 1 "
        "*MATERIAL_AMBIENT 1 1 1 *MATERIAL_SPECULAR 1 1 1 *MATERIAL_SHINESTRENGTH 0.5 *MATERIAL_SHINE "
        "0.5 *MATERIAL_TRANSPARENCY 0.5 *MATERIAL_TWOSIDED 1 *MATERIAL_SELFILLUM_COLOR 0 0 0 "
        "*MATERIAL_TRANSPARENCY_TYPE Additive *MAP_DIFFUSE" +
        map + "*MAP_REFLECT" + map + "*MAP_BUMP" + map +
        "*MATERIAL_ANIMATION { *MATERIAL_ATTRIBUTE \"Diffuse\" *CONTROL_COLOR_BEZIER { "
        "*CONTROL_BEZIER_POINT3_KEY 0 1 1 1 0 0 0 0 0 0 *CONTROL_POINT3_KEY 160 1 1 1 } "
        "*MATERIAL_ATTRIBUTE \"Opacity\" *CONTROL_FLOAT_LINEAR { *CONTROL_FLOAT_KEY 0 1 "
        "*CONTROL_BEZIER_FLOAT_KEY 160 1 0 0 } } ";
    // Whatever is quick to load comes first, so that most truncations are quick.
    return "*3DSMAX_QSAEXPORT 211\n*SCENE { *SCENE_BACKGROUND_STATIC 0 0 0 *SCENE_AMBIENT_STATIC 1 1 1 "
           "*SCENE_FIRSTFRAME 0 *SCENE_LASTFRAME 100 *SCENE_FRAMESPEED 30 *SCENE_TICKSPERFRAME 160 "
           "*SCENE_ENVMAP { *BITMAP \"none.bmp\" } *SCENE_SOUNDFILE \"s\" *SCENE_SCRIPTFILE \"t\" }\n"
           "*TARGETOBJECT { *NODE_NAME \"aim\" }\n*CAMERAOBJECT { *NODE_NAME \"cam\" *TARGET_NODE "
           "\"aim\" *CAMERA_SETTINGS { *CAMERA_FOV 0.8 } }\n*LIGHTOBJECT { *NODE_NAME \"sun\" "
           "*LIGHT_TYPE Omni *LIGHT_USELIGHT 1 *LIGHT_SETTINGS { *LIGHT_COLOR 1 1 1 *LIGHT_INTENS 1 "
           "*LIGHT_ASPECT 1 *LIGHT_HOTSPOT 30 *LIGHT_FALLOFF 40 *LIGHT_TDIST 240 } }\n*ATMOSPHERIC { "
           "*STDFOG { *FOG_COLOR 1 1 1 *FOG_NEAR 1 *FOG_FAR 2 *FOG_DENSITY 3 } }\n"
           "*BONEOBJECT { *NODE_NAME \"bone\" }\n" +
           Helper("*NODE_NAME \"help\" " + transform + animation) +
           MaterialList(
               {material + "*NUMSUBMTLS 2 *SUBMATERIAL 0 { " + material + "} *SUBMATERIAL 1 { }",
                ""}) +
           "*GROUP \"g\" {\n*GEOMOBJECT { *NODE_NAME \"Bounds\" " + Triangle().MeshBlock() + "}\n" +
           mesh.Text() + "*GEOMOBJECT { *NODE_NAME \"copy\" *CLONE \"Cube\" *MATERIAL_REF 1 }\n}\n";
}

class QSALoaderBadInputTest : public QSALoaderTest {
protected:
    /// Loads a text that may be bad; a scene that loads must be sound. Returns the error, or an
    /// empty text.
    std::string Try(const std::string& text, uint32_t flags = 0)
    {
        gLogEntries = kMaxLogEntries; // thousands of warnings are of no interest here
        const std::string error = LoadError(text, flags);
        if (error != "no error")
            return error;
        EXPECT_EQ(FaultsOf(scene, true), "");
        return "";
    }
    /// The bytes of the scene saved as "saved.qsb".
    std::string Saved()
    {
        std::filesystem::remove("saved.qsb"); // replacing it would wait for the disk
        EXPECT_EQ(RaisedBy([&] { gGfx->SaveScene(scene, "saved.qsb"); }), "no error");
        return directory.Read("saved.qsb");
    }
};

} // namespace

TEST_F(QSALoaderBadInputTest, TheWholeTextLoadsWithoutAnError)
{
    Load(Everything());
    EXPECT_EQ(scene.meshes.Count(), 2); // the bounds are gone
    EXPECT_EQ(scene.cameras.Count(), 1);
    EXPECT_EQ(scene.lights.Count(), 1);
    EXPECT_EQ(scene.settings.useFog, 1);
    EXPECT_EQ(scene.clipMode, 3);
}

// An ordinary run tries one length in eleven, which over the text's many lines reaches every place
// in a line; with QSA_EVERY_TRUNCATION=1 in the environment it tries every length.
TEST_F(QSALoaderBadInputTest, TruncationsLoadOrEndInADocumentedError)
{
    const std::string text = Everything();
    const char* wish = std::getenv("QSA_EVERY_TRUNCATION");
    const size_t step = wish && *wish == '1' ? 1 : 11;
    int tried = 0;
    int loaded = 0;
    for (size_t length = 0; length < text.size(); length += step) {
        // Searching for files takes most of the time, so it is done for some lengths only.
        const uint32_t flags = tried++ % 50 == 0 ? 0u : uint32_t{kLoadNoTextures};
        const std::string error = Try(text.substr(0, length), flags);
        loaded += error.empty() ? 1 : 0;
        ASSERT_TRUE(error.empty() || error.compare(0, 11, "scene.qsa: ") == 0 ||
                    error.find("name string") != std::string::npos)
            << length << ' ' << error;
    }
    // A missing brace, a mesh without its faces and a clone without its source fail; the others
    // load.
    EXPECT_GT(loaded, tried / 2);
}

namespace {

/// The errors of the text format that docs/diagnostics.md lists, each split at the placeholders of
/// names and numbers.
std::vector<std::vector<std::string>> StatedErrors()
{
    std::ifstream page(SourcePath("docs/diagnostics.md"));
    std::vector<std::vector<std::string>> errors;
    std::string line;
    while (std::getline(page, line) && line.compare(0, 15, "## Text scenes ") != 0) {}
    while (std::getline(page, line) && line.compare(0, 9, "Warnings:") != 0) {
        if (line.compare(0, 3, "| `") != 0)
            continue;
        const std::string cell = line.substr(0, line.find('|', 1));
        for (size_t at = cell.find('`'); at != std::string::npos;) {
            const size_t end = cell.find('`', at + 1);
            std::vector<std::string>& pieces = errors.emplace_back(1);
            for (size_t i = at + 1; i < end; ++i) {
                if (cell[i] != '%') {
                    pieces.back() += cell[i];
                    continue;
                }
                i = cell.find_first_of("cdfgisu", i); // the end of the placeholder: %i, %lli
                pieces.emplace_back();
            }
            at = cell.find('`', end + 1);
        }
    }
    return errors;
}

bool HoldsInOrder(const std::string& text, const std::vector<std::string>& pieces)
{
    size_t at = 0;
    for (const std::string& piece : pieces) {
        at = text.find(piece, at);
        if (at == std::string::npos)
            return false;
        at += piece.size();
    }
    return true;
}

/// The names of all objects of a scene, list by list; meshes sorted by name, because a load moves
/// opaque ones to the front.
std::vector<std::string> NamesOf(const KRE_3dScene& scene)
{
    std::vector<std::string> names;
    const auto add = [&names](const char* list, const auto& objects) {
        names.emplace_back(list);
        const auto first = static_cast<ptrdiff_t>(names.size());
        for (const auto* object : objects)
            names.emplace_back(object->name.c_str());
        std::sort(names.begin() + first, names.end());
    };
    add("meshes", scene.meshes);
    add("cameras", scene.cameras);
    add("objects", scene.objects);
    add("lights", scene.lights);
    return names;
}

std::string gLastEntry; // of the log
std::string gEntryBefore;

} // namespace

/// Each text gives a sound scene that can be saved and loaded again, or a documented error that
/// names the file, itself or in the warning before it. The result is the same, byte for byte,
/// through a window of any size.
TEST_F(QSALoaderBadInputTest, RandomChangesGiveASoundSceneOrADocumentedError)
{
    const std::string text = Everything();
    const auto stated = StatedErrors();
    ASSERT_GT(stated.size(), 20u);
    gLogSink = [](const char* entry) { gEntryBefore = std::exchange(gLastEntry, entry); };
    const int rounds = 500 / std::min(kHostSlowness, 10);
    int loaded = 0;
    int refused = 0;
    std::mt19937 random(5);
    static constexpr char kBytes[] = "{}*\"0123456789.,-e \nAZ\0\x80\xFF";
    for (int round = 0; round < rounds; ++round) {
        std::string changed = text;
        const size_t changes = 1 + random() % 8;
        for (size_t i = 0; i < changes; ++i) {
            const size_t at = random() % changed.size();
            switch (random() % 4) {
            case 0:
                changed[at] = static_cast<char>(random());
                break;
            case 1:
                changed[at] = kBytes[random() % (sizeof kBytes - 1)];
                break;
            case 2:
                changed.erase(at, random() % 40);
                break;
            default:
                changed.insert(at, changed.substr(random() % changed.size(), random() % 200));
                break;
            }
        }
        loader.SetWindow(1 + static_cast<int32_t>(random() % 5000));
        const std::string error = Try(changed);
        const std::string entry = gLastEntry;
        const std::string ahead = gEntryBefore;
        const std::string bytes = error.empty() ? Saved() : "";
        loader.SetWindow(1 << 20);
        ASSERT_EQ(Try(changed), error) << round << ", in one piece";
        if (error.empty()) {
            ++loaded;
            ASSERT_TRUE(Saved() == bytes) << round << ", in one piece";
            KRE_3dScene again;
            ASSERT_EQ(RaisedBy([&] { gGfx->LoadScene(again, "saved.qsb", 0); }), "no error")
                << round;
            ASSERT_EQ(NamesOf(again), NamesOf(scene)) << round;
            continue;
        }
        ++refused;
        ASSERT_TRUE(std::any_of(stated.begin(), stated.end(),
                                [&](const auto& pieces) { return HoldsInOrder(error, pieces); }))
            << round << ' ' << error;
        ASSERT_THAT(entry, testing::HasSubstr(error)) << round;
        ASSERT_TRUE(error.find("scene.qsa") != std::string::npos ||
                    ahead.find("File 'scene.qsa'") != std::string::npos)
            << round << ' ' << ahead << entry;
    }
    gLogSink = nullptr;
    // Both must be frequent, or the rounds prove nothing.
    EXPECT_GT(loaded, rounds / 5);
    EXPECT_GT(refused, rounds / 10);
}

TEST_F(QSALoaderBadInputTest, StrangeBytesInTextsAreKeptOrRefused)
{
    EXPECT_EQ(Try(Helper("*NODE_NAME \"" + std::string("a\0b", 3) + "\"")), "");
    EXPECT_STREQ(Object(0).name.c_str(), "a");
    EXPECT_EQ(Try(Helper("*NODE_NAME \"\xE4\xF6 \xE2\x82\xAC\"")), "");
    EXPECT_STREQ(Object(0).name.c_str(), "\xE4\xF6 \xE2\x82\xAC");
    EXPECT_EQ(Try(std::string(100000, '\0')), "");
    EXPECT_EQ(Try("\xEF\xBB\xBF*3DSMAX_QSAEXPORT 211"), "");
}

// ---- Texts of 1 MiB that ask for more than they give

namespace {

constexpr size_t kHostileBytes = 1 << 20;
/// The memory that a load may take from the system at its peak.
constexpr int64_t kMostBytes = int64_t{128} << 20;

/// Head, items up to 1 MiB with their numbers in place of each '#', tail; `close` once for each
/// item.
std::string Hostile(const std::string& head, const std::string& item, const std::string& tail,
                    const std::string& close = "")
{
    const auto most = static_cast<size_t>(AffordableCases(kHostileBytes));
    std::string text = head;
    std::string ends;
    for (int i = 0; text.size() + ends.size() + item.size() + tail.size() < most; ++i) {
        size_t from = 0;
        for (size_t mark; (mark = item.find('#', from)) != std::string::npos; from = mark + 1)
            text.append(item, from, mark - from).append(std::to_string(i));
        text.append(item, from);
        ends += close;
    }
    return text + ends + tail;
}

const std::string kOneMesh =
    "*GEOMOBJECT{*NODE_NAME\"s\"*MESH{*MESH_NUMVERTEX 3 *MESH_NUMFACES 1 "
    "*MESH_VERTEX_LIST{*MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0}"
    "*MESH_FACE_LIST{*MESH_FACE 0 A:0 B:1 C:2}}}";

std::vector<std::pair<const char*, std::string>> HostileTexts()
{
    const std::string turns =
        "*HELPEROBJECT{*TM_ANIMATION{*CONTROL_ROT_TRACK{*CONTROL_ROT_KEY 0 0 0 1 1 ";
    return {
        {"open braces", Hostile("", "{", "")},
        {"closing braces", Hostile("", "}", "")},
        {"stars", Hostile("", "*", "")},
        {"stars and blanks", Hostile("", "* ", "")},
        {"quotes", Hostile("*HELPEROBJECT{", "*NODE_NAME\"", "")},
        {"a name without an end", Hostile("*HELPEROBJECT{*NODE_NAME\"", "x", "")},
        {"names without quotes", Hostile("*HELPEROBJECT{", "*NODE_NAME ", "")},
        {"groups", Hostile("", "*GROUP{", "")},
        {"empty nodes", Hostile("", "*BONEOBJECT{}", "")},
        {"empty meshes", Hostile("", "*GEOMOBJECT{}", "")},
        {"empty cameras", Hostile("", "*CAMERAOBJECT{}", "")},
        {"empty lights", Hostile("", "*LIGHTOBJECT{}", "")},
        {"empty materials", Hostile("*MATERIAL_LIST{", "*MATERIAL #{}", "}")},
        {"empty submaterials", Hostile("*MATERIAL_LIST{*MATERIAL 0{", "*SUBMATERIAL #{}", "}}")},
        {"submaterials in each other",
         Hostile("*MATERIAL_LIST{*MATERIAL 0{", "*SUBMATERIAL 0{", "}}", "}")},
        {"empty maps", Hostile("*MATERIAL_LIST{*MATERIAL 0{", "*MAP_BUMP{}", "}}")},
        {"maps of many materials",
         Hostile("*MATERIAL_LIST{", "*MATERIAL #{*MAP_BUMP{*BITMAP\"x\"}}", "}")},
        {"colour keys", Hostile("*MATERIAL_LIST{*MATERIAL 0{*MATERIAL_ANIMATION{*MATERIAL_ATTRIBUTE"
                                "\"Diffuse\"*CONTROL_COLOR_LINEAR{",
                                "*CONTROL_POINT3_KEY 0 0 0 0 ", "}}}}")},
        {"tracks of many materials",
         Hostile("*MATERIAL_LIST{",
                 "*MATERIAL #{*MATERIAL_ANIMATION{*MATERIAL_ATTRIBUTE\"Diffuse\""
                 "*CONTROL_COLOR_LINEAR{*CONTROL_POINT3_KEY 0 1 1 1 }}}",
                 "}")},
        {"material names",
         Hostile("*MATERIAL_LIST{*MATERIAL 0{", "*MATERIAL_NAME\"fParam1='1'\"", "}}")},
        {"announced vertices", Hostile("*GEOMOBJECT{*MESH{", "*MESH_NUMVERTEX 60000 ", "}}")},
        {"announced faces", Hostile("*GEOMOBJECT{*MESH{", "*MESH_NUMFACES 50000 ", "}}")},
        {"faces that are not given",
         Hostile("", "*GEOMOBJECT{*NODE_NAME\"a#\"*MESH{*MESH_NUMVERTEX 1*MESH_NUMFACES 9}}", "")},
        {"texture lists",
         Hostile("*GEOMOBJECT{*MESH{", "*MESH_NUMTVERTEX 60000*MESH_NUMTVFACES 60000 ", "}}")},
        {"faces of one vertex", Hostile("*GEOMOBJECT{*MESH{*MESH_NUMVERTEX 1*MESH_NUMFACES 40000"
                                        "*MESH_FACE_LIST{",
                                        "*MESH_FACE # A:0B:0C:0 ", "}}}")},
        {"loose faces", Hostile("*GEOMOBJECT{*MESH{*MESH_NUMVERTEX 3*MESH_NUMFACES 20000"
                                "*MESH_VERTEX_LIST{*MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 0 "
                                "*MESH_VERTEX 2 0 1 0 }*MESH_FACE_LIST{",
                                "*MESH_FACE # A:0B:1C:2*MESH_SMOOTHING *X ", "}}}")},
        {"smoothing groups",
         Hostile("*GEOMOBJECT{*MESH{*MESH_NUMFACES 1*MESH_FACE_LIST{*MESH_FACE 0 A:0B:0C:0 "
                 "*MESH_SMOOTHING 1",
                 ",#", "}}}")},
        {"bones", Hostile("*GEOMOBJECT{*MESH{*MESH_WEIGHTS{",
                          "*BONE_WEIGHT{*BONE_NAME\"#\"*BONE_INIT_TM{}}", "}}}")},
        {"bones of many meshes",
         Hostile("", "*GEOMOBJECT{*MESH{*MESH_WEIGHTS{*MESH_INIT_TM{}}}}", "")},
        {"clones", Hostile(kOneMesh, "*GEOMOBJECT{*NODE_NAME\"#\"*CLONE\"s\"}", "")},
        {"clones of clones", Hostile(kOneMesh + "*GEOMOBJECT{*NODE_NAME\"0\"*CLONE\"s\"}",
                                     "*GEOMOBJECT{*NODE_NAME\"1#\"*CLONE\"0\"}", "")},
        {"meshes of one triangle", Hostile("", kOneMesh, "")},
        {"long turns", Hostile(turns, "*CONTROL_ROT_KEY 1 0 0 1 99 ", "}}}")},
        {"turns of twenty keys each",
         Hostile(turns, "*CONTROL_TCB_ROT_KEY 1 0 0 1 31 0 0 0 0 0 ", "}}}")},
        {"a turn of most keys",
         turns + "*CONTROL_ROT_KEY 1 0 0 1 314000 *CONTROL_ROT_KEY 1 0 0 1 314000 "
                 "*CONTROL_ROT_KEY 1 0 0 1 314000 *CONTROL_ROT_KEY 1 0 0 1 314000 }}}"},
        {"keys that go back", Hostile("*HELPEROBJECT{*TM_ANIMATION{*CONTROL_POS_TRACK{"
                                      "*CONTROL_POS_SAMPLE 0 0 0 0 *CONTROL_POS_SAMPLE 9 0 0 0 ",
                                      "*CONTROL_POS_SAMPLE 1 0 0 0 ", "}}}")},
        {"chain of parents", Hostile("", "*BONEOBJECT{*NODE_NAME\"1#\"*NODE_PARENT\"2\"}",
                                     "*BONEOBJECT{*NODE_NAME\"2\"}")},
        {"parents that are not there",
         Hostile("", "*BONEOBJECT{*NODE_NAME\"#\"*NODE_PARENT\"x\"}", "")},
        {"scene blocks without speed", Hostile("", "*SCENE{*SCENE_FRAMESPEED 0}", "")},
        {"maps of submaterials that are not there",
         Hostile("*MATERIAL_LIST{*MATERIAL 0{", "*SUBMATERIAL #{*MAP_BUMP{*BITMAP\"#\"}}",
                 "}}" + kOneMesh.substr(0, kOneMesh.size() - 1) + "*MATERIAL_REF 0}")},
        {"environments of many scenes", Hostile("", "*SCENE{*SCENE_ENVMAP{*BITMAP\"#\"}}", "")},
        {"environments", Hostile("*SCENE{*SCENE_ENVMAP{", "*BITMAP\"#\"", "}}")},
    };
}

} // namespace

// None takes more than a fraction of a second; if the cost grew with the square of the text, the
// time limit of a test run would end it.
TEST_F(QSALoaderBadInputTest, TextsThatAskForMuchCostLittle)
{
    const auto texts = HostileTexts();
    for (const auto& [what, text] : texts) {
        ForgetPeakMemory();
        Try(text);
        EXPECT_LT(PeakMemoryGrowth(), kMostBytes) << what; // -1 where the host does not report it
    }
}
