// How the frame of a binary scene differs from that of the text it was converted from. Everything else is
// the same: see ExampleFramesTest.cpp.

#include "app/Options.h"
#include "gfx/KRE_Gfx.h"
#include "scene/KRE_3dScene.h"
#include "tests/app/FrameScene.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/ScratchDirectory.h"
#include "tools/frames/FrameStage.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

using namespace frame_scene;

namespace {

/// The colours of a frame of 160 by 120 at these distances from the middle of the wall, in units,
/// as letters: R, B, K for black, ? for any other.
struct Seen {
    std::string across; ///< at x = -7.5, -2.5, 2.5 and 7.5 of an upright view
    std::string down;   ///< at z = 7.5, 2.5, -2.5 and -7.5 of an upright view
};

class QsbFrame : public testing::Test {
protected:
    ~QsbFrame() override { gLightingOn = 1; }

    /// Writes a scene and draws it as text, saving the binary scene.
    Seen DrawText(const std::string& text)
    {
        scratch.Write("scene.qsa", text);
        return Draw("scene.qsa", "scene.qsb");
    }
    static Seen DrawBinary() { return Draw("scene.qsb", nullptr); }

    const WindowFlags flags;
    const ScratchDirectory scratch;

private:
    static Seen Draw(const char* name, const char* target)
    {
        FrameStage stage(160, 120);
        gLightingOn = 0; // so that surfaces have the colours of their pictures
        const Frame frame = stage.Draw(name, target);
        Seen seen;
        for (const int aside : {-27, -9, 9, 27}) { // pixels; see FrameScene.h
            seen.across += LetterAt(frame, 80 + aside, 60);
            seen.down += LetterAt(frame, 80, 60 + aside);
        }
        return seen;
    }
    static char LetterAt(const Frame& frame, int x, int y)
    {
        const size_t at = static_cast<size_t>(y) * frame.width + static_cast<size_t>(x);
        switch (at < frame.pixels.size() ? frame.pixels[at] & 0xFFFFFF : 1) {
        case 0xFF0000:
            return 'R';
        case 0x0000FF:
            return 'B';
        case 0:
            return 'K';
        default:
            return '?';
        }
    }
};

std::string Black()
{
    return Tga(4, [](unsigned, unsigned) { return 0xFF000000; });
}

} // namespace

TEST_F(QsbFrame, TilingOfAMapAloneIsTheSameFromBoth)
{
    scratch.Write("halves.tga", RedAndBlue());
    // Tiled twice about the middle, u becomes 2 u - 0.5: at 1/8, 3/8, 5/8, 7/8 that is -1/4, 1/4, 3/4, 5/4.
    EXPECT_EQ(DrawText(Wall(Map("DIFFUSE", "halves.tga", "*UVW_U_TILING 2"))).across, "BRBR");
    EXPECT_EQ(DrawBinary().across, "BRBR");
}

// The reflection map is in slot 0, the diffuse map in slot 1. A text leaves the last filled slot selected,
// a binary scene slot 0, and in a material without a frame list only the selected slot is transformed.
TEST_F(QsbFrame, QuirkMapOverAReflectionIsTiledFromTextAlone)
{
    scratch.Write("halves.tga", RedAndBlue());
    scratch.Write("black.tga", Black());
    const std::string maps =
        Map("REFLECT", "black.tga") + Map("DIFFUSE", "halves.tga", "*UVW_U_TILING 2");
    EXPECT_EQ(DrawText(Wall(maps)).across, "BRBR");
    EXPECT_EQ(DrawBinary().across, "RRBB");
}

// Seen from straight ahead, the ray to x is reflected to the side where x is, so a reflection's u
// is below 1/2 on the left and above it on the right. Shifted by a half, the two swap.
TEST_F(QsbFrame, QuirkReflectionBelowAMapIsShiftedFromBinaryAlone)
{
    scratch.Write("halves.tga", RedAndBlue());
    scratch.Write("black.tga", Black());
    const std::string maps =
        Map("REFLECT", "halves.tga", "*UVW_U_OFFSET 0.5") + Map("DIFFUSE", "black.tga");
    EXPECT_EQ(DrawText(Wall(maps)).across, "RRBB");
    EXPECT_EQ(DrawBinary().across, "BBRR");
}

// The camera looks along +y from (0, -40, 0) at its target and leans so that its own up direction
// is +x: its axes x, y, z are (0, 0, -1), (1, 0, 0), (0, -1, 0). That is a rotation by 120 degrees
// about (1, 1, -1), whose signs the format changes. A text leaves the up direction of a camera with
// a target at +z. A binary scene is evaluated once while the target is not known yet, and the up
// direction of the camera's matrix at second 0 stays.
TEST_F(QsbFrame, QuirkCameraWithATargetLeansFromBinaryAlone)
{
    scratch.Write("halves.tga", RedAndBlue());
    const std::string nodes =
        "*TARGETOBJECT { *NODE_NAME \"Aim\" }\n"
        "*CAMERAOBJECT { *NODE_NAME \"Eye\" *TARGET_NODE \"Aim\" "
        "*CAMERA_SETTINGS { *CAMERA_FOV 0.7854 }\n"
        "*NODE_TM { *TM_ROW0 0 0 -1 *TM_ROW1 1 0 0 *TM_ROW2 0 -1 0 *TM_ROW3 0 -40 0 "
        "*TM_POS 0 -40 0 *TM_ROTAXIS -0.577350 -0.577350 0.577350 *TM_ROTANGLE 2.094395 "
        "*TM_SCALE 1 1 1 } }\n";
    const Seen text = DrawText(Wall(Map("DIFFUSE", "halves.tga"), nodes));
    EXPECT_EQ(text.across, "RRBB") << "upright";
    const Seen binary = DrawBinary();
    EXPECT_EQ(binary.down, "BBRR") << "+x is up";
}

// The camera's parent is rotated by 90 degrees about z, and so is the camera itself after a second; neither
// affects its tilt, which is the y axis of the unrotated camera.
TEST_F(QsbFrame, QuirkLeanOfACameraIsThatOfItsOwnMatrixAtSecondZero)
{
    scratch.Write(
        "scene.qsa",
        "*3DSMAX_QSAEXPORT 211\n*SCENE { *SCENE_FRAMESPEED 30 *SCENE_TICKSPERFRAME 160 }\n"
        "*HELPEROBJECT { *NODE_NAME \"Arm\" *NODE_TM { *TM_ROW0 0 -1 0 *TM_ROW1 1 0 0 "
        "*TM_ROW2 0 0 1 *TM_ROW3 0 0 0 *TM_POS 0 0 0 *TM_ROTAXIS 0 0 1 "
        "*TM_ROTANGLE 1.570796 *TM_SCALE 1 1 1 } }\n"
        "*TARGETOBJECT { *NODE_NAME \"Aim\" *NODE_TM { *TM_POS 0 0 -10 } }\n"
        "*CAMERAOBJECT { *NODE_NAME \"Eye\" *NODE_PARENT \"Arm\" *TARGET_NODE \"Aim\"\n"
        "*TM_ANIMATION { *CONTROL_ROT_TRACK { *CONTROL_ROT_SAMPLE 0 0 0 1 0 "
        "*CONTROL_ROT_SAMPLE 4800 0 0 1 1.570796 } } }\n");
    const ScratchEngine engine("");
    KRE_3dScene text, binary;
    gGfx->LoadScene(text, "scene.qsa", 1);
    gGfx->SaveScene(text, "scene.qsb");
    gGfx->LoadScene(binary, "scene.qsb", 1);
    for (const double second : {0.0, 1.0}) {
        text.Update(second, 1);
        binary.Update(second, 1);
        const D3DXVECTOR3& up = binary.cameras.Get(0)->up;
        EXPECT_EQ(text.cameras.Get(0)->up, D3DXVECTOR3(0, 0, 1)) << second;
        EXPECT_EQ(up, D3DXVECTOR3(0, 1, 0)) << second;
        // Rotated by its parent alone, the camera's y axis is along x; rotated by both, it is along
        // y again.
        const float alongY = std::abs(binary.cameras.Get(0)->worldTM._22);
        EXPECT_NEAR(alongY, second == 0.0 ? 0.0f : 1.0f, 1e-5f) << second;
    }
    text.Reset();
    binary.Reset();
}

namespace {

/// A mesh of one face at `x`. With an opacity below 1 it is drawn after the opaque ones.
std::string Twin(const char* x, int material)
{
    return std::string("*GEOMOBJECT { *NODE_NAME \"Twin\" *NODE_TM { *TM_POS ") + x +
           " 0 0 }\n*MESH { *MESH_NUMVERTEX 3 *MESH_NUMFACES 1 *MESH_VERTEX_LIST { *MESH_VERTEX 0 0 0 "
           "0 *MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0 } *MESH_FACE_LIST { *MESH_FACE 0: A: 0 B: 1 "
           "C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0 } } *MATERIAL_REF " +
           std::to_string(material) + " }\n";
}

} // namespace

// A text is linked in its own order and then sorted, opaque meshes first; a binary scene holds the sorted
// order and is linked in that.
TEST_F(QsbFrame, QuirkEachFormatTakesTheFirstParentOfANameInItsOwnOrder)
{
    scratch.Write("scene.qsa",
                  "*3DSMAX_QSAEXPORT 211\n*MATERIAL_LIST { *MATERIAL_COUNT 2\n*MATERIAL 0 { "
                  "*MATERIAL_NAME \"glass\" *MATERIAL_TRANSPARENCY 0.5 }\n*MATERIAL 1 { "
                  "*MATERIAL_NAME \"stone\" } }\n" +
                      Twin("-5", 0) + Twin("5", 1) +
                      "*HELPEROBJECT { *NODE_NAME \"child\" *NODE_PARENT \"Twin\" }\n");
    const ScratchEngine engine("");
    KRE_3dScene text, binary;
    gGfx->LoadScene(text, "scene.qsa", 1);
    gGfx->SaveScene(text, "scene.qsb");
    gGfx->LoadScene(binary, "scene.qsb", 1);
    EXPECT_EQ(text.objects.Get(0)->worldTM._41, -5.0f) << "the first in the file";
    EXPECT_EQ(binary.objects.Get(0)->worldTM._41, 5.0f) << "the opaque one";
    text.Reset();
    binary.Reset();
}
