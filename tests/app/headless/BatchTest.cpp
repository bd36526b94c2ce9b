#include "app/ProcessFile.h"
#include "tests/app/ScratchEngine.h"
#include "tests/support/HostCost.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>
#include <string>

namespace {

/// A helper with a key and a mesh of one face, so that lists, keys and device objects are made.
const char kScene[] =
    "*3DSMAX_QSAEXPORT 211\n"
    "*HELPEROBJECT {\n*NODE_NAME \"Mast\"\n*TM_ANIMATION {\n*CONTROL_POS_TRACK {\n"
    "*CONTROL_POS_SAMPLE 0 1 2 3\n}\n}\n}\n"
    "*GEOMOBJECT {\n*NODE_NAME \"Hull\"\n*MESH {\n*MESH_NUMVERTEX 3\n*MESH_NUMFACES 1\n"
    "*MESH_VERTEX_LIST {\n*MESH_VERTEX 0 0 0 0\n*MESH_VERTEX 1 1 0 0\n*MESH_VERTEX 2 0 1 0\n}\n"
    "*MESH_FACE_LIST {\n*MESH_FACE 0: A: 0 B: 1 C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0\n}\n}\n}\n";

} // namespace

TEST(Batch, ThousandScenesTakeNoMoreMemoryThanTheFirst)
{
    constexpr int kFiles = 1000;
    const ScratchDirectory scratch;
    for (int i = 0; i < kFiles; ++i)
        scratch.Write(std::to_string(i) + ".qsa", kScene);
    const ScratchEngine engine("/resx:64 /resy:64");
    for (int i = 0; i < kFiles; ++i) {
        if (i == kFiles / 4)
            ForgetPeakMemory(); // everything that is created once exists by now
        ProcessFile((std::to_string(i) + ".qsa").c_str(), 1);
    }
    EXPECT_LE(PeakMemoryGrowth(), int64_t{1} << 20);
    EXPECT_TRUE(scratch.Has("0.qsb"));
    EXPECT_EQ(scratch.Read("999.qsb").size(), scratch.Read("998.qsb").size());
}
