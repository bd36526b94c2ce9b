// Models as sources of a batch.

#include <filesystem>

#include <nlohmann/json.hpp>

#include "tests/batch/BatchTesting.h"
#include "tests/import/GltfMaker.h"

using namespace batch_testing;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

class BatchImportTest : public BatchTest {
protected:
    /// A box with a picture, its buffer in a file of its own.
    void WriteModel(float size = 1)
    {
        GltfMaker maker;
        maker.Add("images", {{"uri", "wood.png"}});
        maker.Add("textures", {{"source", 0}});
        nlohmann::json material = ColorMaterial("Wood", 1, 1, 1);
        material["pbrMetallicRoughness"]["baseColorTexture"] = {{"index", 0}};
        maker.Add("materials", material);
        nlohmann::json primitive = BoxPrimitive(maker, size);
        primitive["material"] = 0;
        maker.Root({{"name", "Box"}, {"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
        scratch.Write("in/deep/box.gltf", maker.Text("box.bin"));
        scratch.Write("in/deep/box.bin", maker.bytes);
    }
    static std::string Summary(const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"in", "--out", "o", "--import"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProgramRun run = Batch(arguments);
        return run.out.substr(0, run.out.find(" failed"));
    }
};

constexpr const char* kDone = "0 converted, 1 up to date, 0";
constexpr const char* kModelAgain = "1 converted, 0 up to date, 0";

} // namespace

TEST_F(BatchImportTest, ModelsBecomeScenesBesideTheTargets)
{
    WriteModel();
    fs::copy(SourcePath("examples/crate.png"), "in/deep/wood.png");
    EXPECT_EQ(Summary(), kModelAgain);
    EXPECT_THAT(FilesBelow("o"), testing::ElementsAre(".qsbatch-state", "deep/box.qsa",
                                                      "deep/box.qsb", "deep/wood.png"));
    // The same as the importer and the converter one after the other.
    fs::create_directories("alone");
    EXPECT_EQ(RunProgramFile(BuildPath("qsaimport"), {"in/deep/box.gltf", "-o", "alone"}).status,
              0);
    EXPECT_EQ(scratch.Read("alone/box.qsa"), scratch.Read("o/deep/box.qsa"));
    EXPECT_EQ(ConvertedAlone("alone", "box.qsa"), scratch.Read("o/deep/box.qsb"));
}

TEST_F(BatchImportTest, BuffersPicturesAndOptionsCount)
{
    WriteModel();
    EXPECT_EQ(Summary(), kModelAgain);
    EXPECT_EQ(Summary(), kDone);
    WriteModel(2);
    EXPECT_EQ(Summary(), kModelAgain) << "the buffer changed";
    EXPECT_EQ(Summary(), kDone);
    fs::copy(SourcePath("examples/crate.png"), "in/deep/wood.png");
    EXPECT_EQ(Summary(), kModelAgain) << "the picture came";
    EXPECT_EQ(Summary(), kDone);
    EXPECT_EQ(Summary({"--import-options", "--up z"}), kModelAgain) << "another axis";
    EXPECT_EQ(Summary({"--import-options", "--up z"}), kDone);
}

TEST_F(BatchImportTest, FaultsAndLossesAreMessages)
{
    WriteModel();
    scratch.Write("in/cut.glb", "glTF");
    const ProgramRun run = Batch({"in", "--out", "o", "--import", "--journal", "j"});
    EXPECT_EQ(run.status, 1);
    const std::string journal = scratch.Read("j");
    EXPECT_THAT(journal, HasSubstr("Q918"));
    EXPECT_THAT(journal, HasSubstr("the model cannot be imported: its header is cut"));
    EXPECT_THAT(journal, HasSubstr("Q919"));
    EXPECT_THAT(journal, HasSubstr("of the model: pictures are missing (1)"));
    EXPECT_FALSE(scratch.Has("o/cut.qsb"));
}

TEST_F(BatchImportTest, ScenesInTheListAreConvertedAsTheyAre)
{
    scratch.Write("in/a.qsa", HelperScene("Mast"));
    EXPECT_EQ(Summary({"--include", "*.qsa"}), kModelAgain);
    EXPECT_THAT(FilesBelow("o"), testing::ElementsAre(".qsbatch-state", "a.qsb"));
}

TEST_F(BatchImportTest, WrongOptionsAreTold)
{
    const struct {
        std::vector<std::string> arguments;
        const char* expected;
    } cases[] = {
        {{"in", "--import-options", "--up z"}, "goes with '--import' only"},
        {{"in", "--import", "--import-options", "--up q"}, "option '--import-options': "},
        {{"in", "--import", "--import-options", "-o x"}, "only options that change the scene"},
        {{"plan", "in", "--import"}, "--import"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = Batch(c.arguments);
        EXPECT_EQ(run.status, 2) << c.expected;
        EXPECT_THAT(run.err, HasSubstr(c.expected));
    }
}
