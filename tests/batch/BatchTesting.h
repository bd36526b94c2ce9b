#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/Emulator.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

// Real runs of qsbatch in a directory of their own.

namespace batch_testing {

inline ProgramRun Batch(const std::vector<std::string>& arguments)
{
    return RunProgramFile(BuildPath("qsbatch"), arguments);
}

/// A scene with one helper of this name.
std::string HelperScene(const std::string& name);

/// A wall of two triangles with a picture; `extraFaces` triangles without area give as many warnings.
std::string WallScene(const std::string& picture, int extraFaces = 0);

/// A picture of one colour, 0xRRGGBB, of 8 by 8 pixels: all have the same size in bytes. Its alpha shows what
/// a device keeps from the frame before.
std::string ColorPicture(unsigned color);

/// A scene of a text that no reader accepts: its vertices are not in order.
std::string BrokenScene();

/// Names of all files below a directory, hidden ones too, sorted, with "/" between the parts.
std::vector<std::string> FilesBelow(const std::string& directory);

/// What the converter itself makes of one file in its directory: the bytes of the target.
std::string ConvertedAlone(const std::string& directory, const std::string& leaf,
                           const std::string& options = "");

/// The lines of a text.
std::vector<std::string> LinesOf(const std::string& text);

class BatchTest : public testing::Test {
protected:
    BatchTest()
    {
        setenv("XDG_STATE_HOME", (scratch.Path() / ".state").c_str(), 1);
        setenv("XDG_CONFIG_HOME", (scratch.Path() / ".config").c_str(), 1);
    }
    ~BatchTest() override
    {
        unsetenv("XDG_STATE_HOME");
        unsetenv("XDG_CONFIG_HOME");
    }
    void SetUp() override
    {
        if (RunsUnderAnEmulator())
            GTEST_SKIP() << "qsbatch starts itself as a native program";
    }

    const ScratchDirectory scratch;
};

} // namespace batch_testing
