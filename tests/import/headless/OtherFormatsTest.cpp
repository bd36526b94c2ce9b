// Formats that the general library reads, in a child process with limits.

#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <unistd.h>

#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/ChildRun.h"
#include "import/ImportModel.h"
#include "tests/gltf/GltfDocument.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

const char kSquare[] = "mtllib square.mtl\no Sail\nv 0 0 0\nv 2 0 0\nv 2 3 0\nv 0 3 0\n"
                       "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvn 0 0 1\n"
                       "usemtl Cloth\nf 1/1/1 2/2/1 3/3/1 4/4/1\n";
const char kCloth[] = "newmtl Cloth\nKd 0.5 0.25 0.75\nKs 1 1 1\nNs 40\nd 0.5\nmap_Kd crate.png\n";
const char kTriangle[] = "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n"
                         "property float y\nproperty float z\nelement face 1\n"
                         "property list uchar int vertex_indices\nend_header\n"
                         "0 0 0\n4 0 0\n0 5 0\n3 0 1 2\n";
const char kBones[] = "HIERARCHY\nROOT Hip\n{\n\tOFFSET 0 0 0\n"
                      "\tCHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
                      "\tJOINT Knee\n\t{\n\t\tOFFSET 0 5 0\n"
                      "\t\tCHANNELS 3 Zrotation Xrotation Yrotation\n"
                      "\t\tEnd Site\n\t\t{\n\t\t\tOFFSET 0 4 0\n\t\t}\n\t}\n}\n"
                      "MOTION\nFrames: 3\nFrame Time: 0.5\n"
                      "0 0 0 0 0 0 0 0 0\n1 0 0 10 0 0 0 20 0\n2 0 0 20 0 0 0 40 0\n";

class OtherFormatsTest : public testing::Test {
protected:
    std::string Import(const std::string& name, const ImportOptions& options = {})
    {
        notices = {};
        return directory.Read(ImportModel(name, options, notices).scene);
    }
    std::string FaultOf(const std::string& name, const ImportOptions& options = {})
    {
        try {
            NoticeList ignored;
            ImportModel(name, options, ignored);
        } catch (const ModelFault& fault) {
            EXPECT_FALSE(fs::exists(fs::path(name).stem().string() + ".qsa"));
            return fault.what();
        }
        return "";
    }

    ScratchDirectory directory;
    NoticeList notices;
};

} // namespace

TEST_F(OtherFormatsTest, ObjWithMaterialAndPicture)
{
    directory.Write("square.obj", kSquare);
    directory.Write("square.mtl", kCloth);
    fs::copy(SourcePath("examples/crate.png"), "crate.png");
    const std::string text = Import("square.obj");
    EXPECT_THAT(text, HasSubstr("*MATERIAL_DIFFUSE\t0.5\t0.25\t0.75\n"));
    EXPECT_THAT(text, HasSubstr("*MATERIAL_TRANSPARENCY\t0.5\n"));
    EXPECT_THAT(text, HasSubstr("*MATERIAL_SHINE\t0.4\n"));
    EXPECT_THAT(text, HasSubstr("*BITMAP\t\"crate.png\"\n"));
    EXPECT_THAT(text, HasSubstr("*MESH_NUMFACES\t2\n"));
    EXPECT_THAT(text, HasSubstr("\t2\t-0\t3\n")); // (2, 3, 0) with Z up
    EXPECT_THAT(text, HasSubstr("*MESH_TVERT\t0\t0\t0\t0\n"));
}

TEST_F(OtherFormatsTest, LargeMeshesAreCut)
{
    constexpr int kFaces = 23400; // 70,200 vertices
    std::string text = "o Field\n";
    for (int i = 0; i < kFaces; ++i) {
        const std::string x = "v " + std::to_string(i), first = std::to_string(3 * i + 1);
        text += x + " 0 0\n" + x + " 1 0\n" + x + " 0 1\nf " + first + " " +
                std::to_string(3 * i + 2) + " " + std::to_string(3 * i + 3) + "\n";
    }
    directory.Write("field.obj", text);
    const std::string scene = Import("field.obj");
    int found = 0, pieces = 0;
    for (size_t at = scene.find("*MESH_NUM"); at != std::string::npos;
         at = scene.find("*MESH_NUM", at + 1)) {
        const int count = std::stoi(scene.substr(scene.find('\t', at)));
        EXPECT_LT(count, 65535);
        if (scene.compare(at, 14, "*MESH_NUMFACES") == 0) {
            found += count;
            ++pieces;
        }
    }
    EXPECT_EQ(found, kFaces);
    EXPECT_EQ(pieces, 2);
    EXPECT_THAT(notices.Lines(), ElementsAre("mesh 'Field' was cut into 2 pieces (1)"));
}

TEST_F(OtherFormatsTest, PlyWithZUp)
{
    directory.Write("triangle.ply", kTriangle);
    ImportOptions options;
    options.plan.up = PlanOptions::Up::kZ;
    EXPECT_THAT(Import("triangle.ply", options), HasSubstr("\t0\t5\t0\n"));
    EXPECT_THAT(Import("triangle.ply"), HasSubstr("\t0\t-0\t5\n"));
}

TEST_F(OtherFormatsTest, BonesWithoutAMeshMoveAsInTheirFile)
{
    directory.Write("walk.bvh", kBones);
    const std::string text = Import("walk.bvh");
    EXPECT_THAT(text, HasSubstr("*NODE_NAME\t\"Knee\""));
    EXPECT_THAT(text, HasSubstr("*CONTROL_ROT_SAMPLE\t2400\t"));
    ASSERT_EQ(RunProgram({"/stop", "walk.qsa"}).status, 1);
    ASSERT_EQ(RunProgramFile(BuildPath("qsbexport"), {"walk.qsb"}).status, 0);
    const GltfDocument back("walk.glb");
    // The knee is five above the hip, which moves along x and turns about z by 10 degrees.
    const GltfMatrix knee = back.WorldOf(back.NodeOf("Knee"), 0.5);
    EXPECT_NEAR(knee[12], 1 - 5 * std::sin(10 * 3.14159265 / 180), 1e-4);
    EXPECT_NEAR(knee[13], 5 * std::cos(10 * 3.14159265 / 180), 1e-4);
}

TEST_F(OtherFormatsTest, FaultsAreTold)
{
    directory.Write("empty.obj", "# nothing\n");
    directory.Write("cut.ply", std::string(kTriangle).substr(0, 120));
    directory.Write("notes.xyzzy", "a");
    EXPECT_NE(FaultOf("empty.obj"), "");
    ImportOptions options; // the library does not come back from this one
    options.mostSeconds = 0.3;
    EXPECT_EQ(FaultOf("cut.ply", options), "reading it takes too long");
    EXPECT_EQ(FaultOf("notes.xyzzy"), "it is of a format that is not read");
    EXPECT_EQ(FaultOf("none.obj"), "it cannot be read");
}

TEST_F(OtherFormatsTest, ACrashOfTheChildIsAFault)
{
    const auto faultOf = [](const ChildLimits& limits, const std::function<std::string()>& work) {
        try {
            return "done: " + RunInChild(limits, work);
        } catch (const ModelFault& fault) {
            return std::string(fault.what());
        }
    };
    const ChildLimits wide = {30, uint64_t{1} << 30};
    EXPECT_EQ(faultOf(wide, [] { return std::string(200000, 'x'); }),
              "done: " + std::string(200000, 'x'));
    EXPECT_THAT(faultOf(wide,
                        [] {
                            std::raise(SIGSEGV);
                            return std::string();
                        }),
                StartsWith("its reader crashed: "));
    EXPECT_EQ(faultOf({0.2, wide.bytes},
                      [] {
                          pause();
                          return std::string();
                      }),
              "reading it takes too long");
#ifndef __SANITIZE_ADDRESS__ // which reserves a huge address space
    EXPECT_EQ(faultOf({30, 1 << 24}, [] { return std::string(size_t{1} << 28, 'x'); }),
              "reading it needs too much memory");
#endif
}

TEST_F(OtherFormatsTest, TheProgramNamesEachModel)
{
    directory.Write("triangle.ply", kTriangle);
    directory.Write("empty.obj", "# nothing\n");
    const ProgramRun run =
        RunProgramFile(BuildPath("qsaimport"), {"empty.obj", "triangle.ply", "-o", "made/here"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, StartsWith("qsaimport: empty.obj: "));
    EXPECT_EQ(run.out, "made/here/triangle.qsa\n");
    EXPECT_TRUE(directory.Has("made/here/triangle.qsa"));
    EXPECT_EQ(RunProgramFile(BuildPath("qsaimport"), {}).status, 2);
    EXPECT_EQ(RunProgramFile(BuildPath("qsaimport"), {"a.glb", "--up", "x"}).status, 2);
    EXPECT_THAT(RunProgramFile(BuildPath("qsaimport"), {"--help"}).out, HasSubstr("--animation"));
}
