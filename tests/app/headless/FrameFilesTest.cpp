// How a user checks a conversion: the program writes the frames of a text and of its binary scene, stopped
// at the start, each in a process that draws nothing else.

#include "tests/support/Picture.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TestDevice.h"
#include "tests/support/TreePaths.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

class FrameFiles : public testing::Test {
protected:
    FrameFiles()
    {
        fs::copy(SourcePath("examples"), scratch.Path(), fs::copy_options::recursive);
        setenv("QSA2QSB_FRAMES", (scratch.Path() / "frames").c_str(), 1);
    }
    ~FrameFiles() override { unsetenv("QSA2QSB_FRAMES"); }

    Picture FrameOf(const std::string& name)
    {
        EXPECT_EQ(RunProgram({name, "/stop"}).out, "'" + name + "' converted\n");
        return ReadPngPicture(device.Device(),
                              (scratch.Path() / "frames" / (name + ".png")).string());
    }

    const ScratchDirectory scratch;
    const TestDevice device;
};

} // namespace

// Scenes in the subfolders have effects, whose clock /stop does not stop: even two frames of one
// file differ there.
TEST_F(FrameFiles, TextAndBinarySceneShowTheSameAloneInAProcess)
{
    std::vector<std::string> scenes;
    for (const fs::directory_entry& entry : fs::directory_iterator(scratch.Path()))
        if (entry.path().extension() == ".qsa")
            scenes.push_back(entry.path().stem().string());
    ASSERT_GE(scenes.size(), 9u);
    for (const std::string& scene : scenes) {
        const Picture text = FrameOf(scene + ".qsa");
        const Picture binary = FrameOf(scene + ".qsb");
        ASSERT_EQ(text.pixels.size(), 640u * 480) << scene;
        const PictureDifference found = ComparePictures(text, binary, 2);
        EXPECT_LE(found.pixels, text.pixels.size() / 1000)
            << scene << ", largest step " << found.largestStep;
    }
}
