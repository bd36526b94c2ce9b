// A scene loaded from a damaged file is drawn like any other scene.

#include "app/SceneSession.h"
#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/FileContent.h"
#include "tests/support/HostCost.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"
#include "tools/frames/FrameStage.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace {

// A camera that does not depend on the scene's contents, and two triangles in its view.
const std::string kEye = "*3DSMAX_QSAEXPORT 200\n*TARGETOBJECT { *NODE_NAME \"Aim\" }\n"
                         "*CAMERAOBJECT { *NODE_NAME \"Eye\" *TARGET_NODE \"Aim\" "
                         "*CAMERA_SETTINGS { *CAMERA_FOV 1 } *NODE_TM { *TM_POS 0 -10 1 } }\n";
const std::string kVertices = "*MESH_VERTEX_LIST { *MESH_VERTEX 0 -3 0 0 *MESH_VERTEX 1 -1 0 0 "
                              "*MESH_VERTEX 2 -2 0 2 *MESH_VERTEX 3 1 0 0 *MESH_VERTEX 4 3 0 0 "
                              "*MESH_VERTEX 5 2 0 2 } ";
const std::string kLeftFace = "*MESH_FACE 0: A: 0 B: 1 C: 2 ";
const std::string kRightFace = "*MESH_FACE 1: A: 3 B: 4 C: 5 ";

std::string Mesh(const std::string& faces, int count, const std::string& more = "")
{
    return "*GEOMOBJECT { *NODE_NAME \"Sails\" *MESH { *MESH_NUMVERTEX 6 *MESH_NUMFACES " +
           std::to_string(count) + " " + kVertices + "*MESH_FACE_LIST { " + faces + "} } " + more +
           "}\n";
}

class DamagedScene : public testing::Test {
protected:
    Frame Draw(const std::string& text)
    {
        scratch.Write("scene.qsa", text);
        return stage->Draw("scene.qsa");
    }
    static size_t InkOf(const Frame& frame, const Frame& empty)
    {
        const FrameDifference found = CompareFrames(frame, empty, 16);
        return found.displaced + found.wrong;
    }

    const WindowFlags flags;
    const ScratchDirectory scratch;
    std::unique_ptr<FrameStage> stage = std::make_unique<FrameStage>(64, 48);
};

} // namespace

TEST_F(DamagedScene, LooksLikeTheSceneOfItsIntactParts)
{
    const std::string both = kEye + Mesh(kLeftFace + kRightFace, 2);
    const std::string left = kEye + Mesh(kLeftFace, 1);
    const std::string nothing = kEye + "*GEOMOBJECT { *NODE_NAME \"Sails\" }\n";
    const struct {
        const char* what;
        std::string damaged;
        std::string whole;
    } cases[] = {
        {"the last braces are missing", both.substr(0, both.rfind("} }")), both},
        {"a further node is cut off",
         both + "*HELPEROBJECT { *NODE_NAME \"Mast\" *NODE_TM { *TM_POS 1", both},
        {"the second face was never given", kEye + Mesh(kLeftFace, 2), left},
        {"a face without an area", kEye + Mesh(kLeftFace + "*MESH_FACE 1: A: 3 B: 3 C: 3 ", 2),
         left},
        {"a material that is not there", kEye + Mesh(kLeftFace, 1, "*MATERIAL_REF 7 "), left},
        {"a node whose geometry is gone", left + "*GEOMOBJECT { *NODE_NAME \"Copy\" }\n", left},
    };
    const Frame empty = Draw(nothing);
    ASSERT_GT(InkOf(Draw(left), empty), 20u);
    ASSERT_GT(InkOf(Draw(both), Draw(left)), 20u);
    for (const auto& c : cases)
        EXPECT_TRUE(Draw(c.damaged).pixels == Draw(c.whole).pixels) << c.what;
}

namespace {

/// Saves a helper and a mesh with these settings for the markers.
void SaveMarked(const char* name, int32_t objects, int32_t lights)
{
    KRE_3dScene scene;
    gGfx->LoadScene(scene, "scene.qsa", 1);
    scene.settings.showObjects = objects;
    scene.settings.showLights = lights;
    gGfx->SaveScene(scene, name);
}

} // namespace

TEST_F(DamagedScene, MarkersOfAnUnknownKindAreNotDrawn)
{
    scratch.Write("scene.qsa",
                  kEye + Mesh(kLeftFace, 1) +
                      "*HELPEROBJECT { *NODE_NAME \"Mast\" *NODE_TM { *TM_POS 2 0 0 } }\n");
    SaveMarked("none.qsb", kMarkersNone, kMarkersNone);
    SaveMarked("all.qsb", kMarkersAll, kMarkersNone);
    SaveMarked("odd.qsb", 99, 99);
    const Frame none = stage->Draw("none.qsb");
    EXPECT_FALSE(stage->Draw("all.qsb").pixels == none.pixels);
    EXPECT_TRUE(stage->Draw("odd.qsb").pixels == none.pixels);
}

// ---- Samples of all damages

namespace {

std::string ExampleText(const char* name)
{
    return FileContent(SourcePath("examples/") + name);
}

/// A truncated light has no type; the tests of lights cover that.
bool EndsInALight(const std::string& text)
{
    const size_t light = text.rfind("*LIGHTOBJECT");
    return light != std::string::npos &&
           std::count(text.begin() + static_cast<ptrdiff_t>(light), text.end(), '{') >
               std::count(text.begin() + static_cast<ptrdiff_t>(light), text.end(), '}');
}

enum class Outcome { RefusedAtLoad, FailedAtDraw, Drawn };

/// Loads, saves and draws files on one engine, and counts how far they get.
class DamagedSample : public DamagedScene {
protected:
    DamagedSample()
    {
        for (const auto& entry : fs::directory_iterator(SourcePath("examples"))) {
            if (entry.is_regular_file())
                fs::copy(entry.path(), scratch.Path() / entry.path().filename());
        }
        ReadBanner(banner);
        before = stage->Draw("groups.qsa");
        before = stage->Draw("groups.qsa"); // the first frame of an engine blends otherwise
    }

    Outcome TakeThrough(const std::string& bytes)
    {
        scratch.Write("damaged.qsa", bytes);
        SceneSession session;
        Outcome outcome = Outcome::RefusedAtLoad;
        try {
            session.Load("damaged.qsa");
            outcome = Outcome::FailedAtDraw;
            session.DrawFrame(banner);
            outcome = Outcome::Drawn;
        } catch (const ErrorMsg& error) {
            message = error.message;
        } catch (const KRE_Error& error) {
            message = error.message;
        }
        ++counts[static_cast<int>(outcome)];
        return outcome;
    }
    /// An error ends a run, so the next file gets a new engine.
    void StartAnew()
    {
        stage.reset();
        stage = std::make_unique<FrameStage>(64, 48);
        stage->Draw("groups.qsa");
    }
    void ExpectTheNextSceneUnharmed()
    {
        EXPECT_TRUE(stage->Draw("groups.qsa").pixels == before.pixels);
    }

    char banner[kBannerSize];
    Frame before;
    std::string message; ///< of the last error
    int counts[3]{};
};

} // namespace

TEST_F(DamagedSample, TruncatedTextsThatLoadAreDrawn)
{
    for (const char* name : {"groups.qsa", "keywords.qsa", "oddities.qsa", "animation.qsa"}) {
        const std::string text = ExampleText(name);
        ASSERT_GT(text.size(), 1000u) << name;
        const size_t step = text.size() / 41 * static_cast<size_t>(std::min(kHostSlowness, 8));
        for (size_t size = 1; size < text.size(); size += step) {
            const std::string cut = text.substr(0, size);
            if (EndsInALight(cut) || TakeThrough(cut) != Outcome::FailedAtDraw)
                continue;
            ADD_FAILURE() << name << " cut to " << size << ": " << message;
            StartAnew();
        }
        ExpectTheNextSceneUnharmed();
    }
    // A slow host takes an eighth of the cuts.
    EXPECT_GT(counts[static_cast<int>(Outcome::Drawn)], kHostSlowness > 1 ? 0 : 10);
    EXPECT_GT(counts[static_cast<int>(Outcome::RefusedAtLoad)], kHostSlowness > 1 ? 0 : 2);
}

// A helper, a mesh with a material and no light: each third byte behind the version is set to its highest
// value, or to one more.
TEST_F(DamagedSample, ChangedBinaryScenesThatLoadAreDrawn)
{
    scratch.Write("small.qsa",
                  kEye + "*MATERIAL_LIST { *MATERIAL 0 { *MATERIAL_NAME \"Cloth\" } }\n" +
                      Mesh(kLeftFace + kRightFace, 2, "*MATERIAL_REF 0 ") +
                      "*HELPEROBJECT { *NODE_NAME \"Mast\" *NODE_TM { *TM_POS 2 0 0 } }\n");
    {
        KRE_3dScene scene;
        gGfx->LoadScene(scene, "small.qsa", 1);
        gGfx->SaveScene(scene, "small.qsb"); // without the lights that a session adds
    }
    const std::string bytes = scratch.Read("small.qsb");
    const auto step = static_cast<size_t>(3 * std::min(kHostSlowness, 20));
    for (size_t at = 4; at < bytes.size(); at += step) {
        for (const int value : {255, bytes[at] + 1}) {
            std::string changed = bytes;
            changed[at] = static_cast<char>(value);
            if (TakeThrough(changed) != Outcome::FailedAtDraw)
                continue;
            ADD_FAILURE() << "byte " << at << " as " << value << ": " << message;
            StartAnew();
        }
    }
    ExpectTheNextSceneUnharmed();
    EXPECT_GT(counts[static_cast<int>(Outcome::Drawn)], 10);
    EXPECT_GT(counts[static_cast<int>(Outcome::RefusedAtLoad)], 2);
}
