// Models as sources of a batch.

#include <filesystem>

#include <nlohmann/json.hpp>

#include "batch/Confinement.h"
#include "tests/batch/BatchTesting.h"
#include "tests/import/GltfMaker.h"

using namespace batch_testing;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

constexpr const char* kSquare =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
    "usemtl wood\nf 1/1 2/2 3/3 4/4\n";

class BatchImportTest : public BatchTest {
protected:
    /// A box with a picture, its buffer in a file of its own.
    void WriteModel(float size = 1, const std::string& name = "box", const char* buffer = "box.bin",
                    const char* picture = "wood.png")
    {
        GltfMaker maker;
        maker.Add("images", {{"uri", picture}});
        maker.Add("textures", {{"source", 0}});
        nlohmann::json material = ColorMaterial("Wood", 1, 1, 1);
        material["pbrMetallicRoughness"]["baseColorTexture"] = {{"index", 0}};
        maker.Add("materials", material);
        nlohmann::json primitive = BoxPrimitive(maker, size);
        primitive["material"] = 0;
        maker.Root({{"name", "Box"}, {"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
        scratch.Write("in/deep/" + name + ".gltf", maker.Text(buffer));
        scratch.Write("in/deep/" + name + ".bin", maker.bytes);
    }
    /// A square of a format that a library reads.
    void WriteSquare(const std::string& name, const std::string& materials,
                     const std::string& picture)
    {
        scratch.Write("in/deep/" + name + ".obj", "mtllib " + materials + "\n" + kSquare);
        scratch.Write("in/deep/" + name + ".mtl",
                      "newmtl wood\nKd 0.8 0.6 0.4\nmap_Kd " + picture + "\n");
    }
    /// The text that a model became, without its name; "" if there is none.
    std::string SceneOf(const std::string& name, const std::string& extension)
    {
        const std::string file = "o/deep/" + name + ".qsa";
        std::string text = scratch.Has(file) ? scratch.Read(file) : "";
        const std::string own = '"' + name + extension + '"';
        for (size_t at = text.find(own); at != std::string::npos; at = text.find(own, at))
            text.replace(at, own.size(), "NAME");
        return text;
    }
    /// As much as this build and this kernel have.
    static std::string Untrusted()
    {
        return MissingConfinement().empty() ? "--untrusted" : "--untrusted=best-effort";
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

TEST_F(BatchImportTest, ModelsOfStrangersGiveTheSameFiles)
{
    WriteModel();
    WriteSquare("square", "square.mtl", "wood.png");
    fs::copy(SourcePath("examples/crate.png"), "in/deep/wood.png");
    const ProgramRun run = Batch({"in", "--out", "o", "--import", Untrusted()});
    EXPECT_EQ(Batch({"in", "--out", "plain", "--import", "--state", "s"}).status, run.status);
    EXPECT_EQ(FilesBelow("o"), FilesBelow("plain"));
    for (const std::string& leaf : FilesBelow("o"))
        EXPECT_TRUE(scratch.Read("o/" + leaf) == scratch.Read("plain/" + leaf)) << leaf;
    EXPECT_TRUE(scratch.Has("o/deep/box.qsb"));
    EXPECT_EQ(scratch.Has("o/deep/square.qsb"), run.status == 0) << run.err;
}

TEST_F(BatchImportTest, FilesOfModelsOutsideCountAsMissing)
{
    if (LandlockVersion() == 0)
        GTEST_SKIP() << "the kernel has no Landlock";
    fs::create_directory("outside");
    fs::copy(SourcePath("examples/crate.png"), "outside/wood.png");
    WriteModel(1, "gone", "gone.bin", "none.png");
    WriteModel(1, "picture", "picture.bin", "../../outside/wood.png");
    WriteModel(1, "buffer", "../../outside/buffer.bin");
    WriteSquare("a", "none.mtl", "wood.png");
    fs::remove("in/deep/a.mtl"); // which would be taken for the missing one
    WriteSquare("b", "../../outside/b.mtl", "wood.png");
    WriteSquare("c", "c.mtl", "none.png");
    WriteSquare("d", "d.mtl", (scratch.Path() / "outside/wood.png").string());
    for (const char* leaf : {"buffer.bin", "b.mtl"})
        fs::rename(std::string("in/deep/") + leaf, std::string("outside/") + leaf);
    const ProgramRun run = Batch({"in", "--out", "o", "--import", Untrusted()});
    EXPECT_EQ(run.status, 1);
    EXPECT_FALSE(scratch.Has("o/deep/buffer.qsb"));
    EXPECT_THAT(run.err, HasSubstr("in/deep/buffer.gltf: error Q918: "));
    EXPECT_FALSE(scratch.Has("o/deep/wood.png"));
    EXPECT_EQ(SceneOf("picture", ".gltf"), SceneOf("gone", ".gltf"));
    EXPECT_THAT(SceneOf("gone", ".gltf"), HasSubstr("MESH_VERTEX"));
    EXPECT_EQ(SceneOf("b", ".obj"), SceneOf("a", ".obj"));
    EXPECT_EQ(SceneOf("d", ".obj"), SceneOf("c", ".obj"));
    Batch({"in", "--out", "plain", "--import"});
    for (const std::string leaf : {"a.qsb", "b.qsb", "c.qsb", "d.qsb"})
        EXPECT_EQ(scratch.Has("o/deep/" + leaf), scratch.Has("plain/deep/" + leaf)) << leaf;
    EXPECT_TRUE(scratch.Has("plain/deep/buffer.qsb")) << "trusted models get it";
    EXPECT_TRUE(scratch.Has("plain/deep/wood.png"));
}
