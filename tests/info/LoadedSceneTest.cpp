#include "info/LoadedScene.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "tests/info/InfoTesting.h"
#include "tests/support/TreePaths.h"

using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

const char kText[] =
    "*3DSMAX_QSAEXPORT 211\n*SCENE {\n\t*SCENE_FIRSTFRAME 10\n\t*SCENE_LASTFRAME 40\n"
    "\t*SCENE_FRAMESPEED 25\n}\n*HELPEROBJECT {\n\t*NODE_NAME \"Mast\"\n}\n";

/// A triangle whose only material names textures.
QsbFile TexturedFile(const std::vector<std::string>& names)
{
    QsbFile file = InfoBoat();
    for (size_t i = 0; i < names.size(); ++i)
        file.scene.meshes[0].textures[0].slots[i].file = names[i];
    return file;
}

class LoadedSceneTest : public InfoTest {};

} // namespace

TEST(WarningList, CountsRepeatsOfATextOnce)
{
    WarningList list;
    list.OnReport(ReportKind::kWarning, "Loader", "a");
    list.OnReport(ReportKind::kWarning, "Loader", "b: c");
    list.OnReport(ReportKind::kWarning, "Loader", "a");
    list.OnReport(ReportKind::kError, "Loader", "d");
    list.OnReport(ReportKind::kWarning, "", "no source");
    ASSERT_EQ(list.Kept().size(), 3u);
    EXPECT_EQ(list.Kept()[0].source, "Loader");
    EXPECT_EQ(list.Kept()[0].text, "a");
    EXPECT_EQ(list.Kept()[0].count, 2);
    EXPECT_EQ(list.Kept()[1].text, "b: c");
    EXPECT_EQ(list.Kept()[2].source, "");
    EXPECT_EQ(list.Kept()[2].text, "no source");
    EXPECT_EQ(list.Count(), 4);
    EXPECT_EQ(list.LeftOut(), 0);
}

TEST(WarningList, BeyondTheLimitOnlyTheNumberIsKept)
{
    WarningList list;
    for (int i = 0; i < 1500; ++i)
        list.OnReport(ReportKind::kWarning, "Loader", std::to_string(i).c_str());
    list.OnReport(ReportKind::kWarning, "Loader", "3");
    EXPECT_EQ(list.Kept().size(), 1000u);
    EXPECT_EQ(list.Count(), 1501);
    EXPECT_EQ(list.LeftOut(), 500);
}

TEST_F(LoadedSceneTest, QsbAndQsaAreDistinguishedByTheirBytes)
{
    LoadedScene qsb;
    Load(qsb, InfoBoat(), "boat.txt");
    EXPECT_TRUE(qsb.IsQsb());
    EXPECT_EQ(qsb.version, 106);
    EXPECT_EQ(qsb.sizeBytes, static_cast<int64_t>(MakeQsb(InfoBoat()).bytes.size()));
    EXPECT_EQ(qsb.scene.meshes.Count(), 1);

    LoadedScene qsa;
    LoadBytes(qsa, kText, "mast.qsb");
    EXPECT_FALSE(qsa.IsQsb());
    EXPECT_EQ(qsa.scene.objects.Count(), 1);
    EXPECT_EQ(qsa.header.firstFrame, 10.0f);
    EXPECT_DOUBLE_EQ(qsa.Seconds(), 1.2); // 30 frames at 25 per second
}

TEST_F(LoadedSceneTest, OldVersionsAreReported)
{
    QsbFile file = InfoBoat();
    file.version = 103;
    LoadedScene loaded;
    Load(loaded, file);
    EXPECT_EQ(loaded.version, 103);
}

TEST_F(LoadedSceneTest, NoFrameRateIsNoLength)
{
    QsbFile file = InfoBoat();
    file.frameSpeed = 0;
    LoadedScene loaded;
    Load(loaded, file);
    EXPECT_EQ(loaded.Seconds(), 0);
}

TEST_F(LoadedSceneTest, EachSceneHasAHeaderOfItsOwn)
{
    QsbFile file = InfoBoat();
    file.sound = "a.wav";
    LoadedScene first;
    Load(first, file, "a.qsb");
    file.sound = "b.wav";
    LoadedScene second;
    Load(second, file, "b.qsb");
    EXPECT_STREQ(first.header.soundFile.c_str(), "a.wav");
    EXPECT_STREQ(second.header.soundFile.c_str(), "b.wav");
}

TEST_F(LoadedSceneTest, FilesThatCannotBeLoadedSayWhy)
{
    fs::create_directory("folder");
    directory.Write("empty.qsb", "");
    directory.Write("short.qsb", "QSB");
    std::string bytes = MakeQsb(InfoBoat()).bytes;
    bytes[3] = 107;
    directory.Write("new.qsb", bytes);
    bytes[3] = 99;
    directory.Write("old.qsb", bytes);
    bytes[3] = 106;
    directory.Write("cut.qsb", bytes.substr(0, bytes.size() - 1));
    static const struct {
        const char* file;
        const char* expected;
    } cases[] = {
        {"nothing.qsb", "cannot be opened: "},
        {"nowhere/a.qsb", "no such directory"},
        {"", "cannot be opened: "},
        {"empty.qsb", "too short for a scene file, or not readable"},
        {"short.qsb", "too short for a scene file, or not readable"},
        {"new.qsb", "Unknown qsb file version: 107 (new.qsb)"},
        {"old.qsb", "'old.qsb': Obsolete qsb file version: 99"},
        {"cut.qsb", "Error reading from file"},
    };
    for (const auto& c : cases) {
        LoadedScene loaded;
        EXPECT_FALSE(loaded.Load(c.file)) << c.file;
        EXPECT_THAT(loaded.errorText, HasSubstr(c.expected)) << c.file;
    }
    LoadedScene loaded;
    EXPECT_FALSE(loaded.Load("folder")) << "a directory is no file";
}

TEST_F(LoadedSceneTest, WarningsAreTakenAndNoLogIsWritten)
{
    QsbFile file = InfoBoat();
    file.scene.objects[1].parentName = "Nobody";
    LoadedScene loaded;
    Load(loaded, file);
    ASSERT_EQ(loaded.warnings.Kept().size(), 1u);
    EXPECT_THAT(loaded.warnings.Kept()[0].text, HasSubstr("Parent object 'Nobody' not found"));

    LoadedScene again; // in a second load the same text is not a repeat
    Load(again, file);
    EXPECT_EQ(again.warnings.Count(), 1);
}

TEST_F(LoadedSceneTest, LoadsFromTheDirectoryOfTheFileAndComesBack)
{
    const fs::path before = fs::current_path();
    directory.Write("deck/stone.png", "no picture");
    directory.Write("deck/boat.qsb", MakeQsb(TexturedFile({"gone.png"})).bytes);
    LoadedScene loaded;
    EXPECT_TRUE(loaded.Load("deck/boat.qsb"));
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_EQ(loaded.FindTexture("stone.png"), "deck/stone.png");
    EXPECT_EQ(loaded.FindTexture("gone.png"), "");
    EXPECT_EQ(fs::current_path(), before);

    LoadedScene absolute;
    EXPECT_TRUE(absolute.Load((before / "deck/boat.qsb").string()));
    for (const ReaderWarning& warning : absolute.warnings.Kept())
        EXPECT_EQ(warning.text.find("Absolute"), std::string::npos) << warning.text;
}

TEST_F(LoadedSceneTest, TexturesThatTheLoadDropsAreRemembered)
{
    LoadedScene loaded;
    Load(loaded, TexturedFile({"b.png", "a.png", "b.png"}));
    EXPECT_THAT(loaded.lostTextures, ElementsAre("a.png", "b.png"));
    EXPECT_EQ(loaded.warnings.Count(), 3);
    EXPECT_THAT(loaded.warnings.Kept()[0].text, HasSubstr("Can not open texture: b.png"));
}

TEST_F(LoadedSceneTest, TexturesOfAnotherMachineAreFoundBesideTheScene)
{
    fs::create_directory("deck");
    fs::copy_file(SourcePath("examples/stone.png"), "deck/stone.png");
    directory.Write("deck/boat.qsb", MakeQsb(TexturedFile({"Q:\\art\\stone.png"})).bytes);
    LoadedScene loaded;
    ASSERT_TRUE(loaded.Load("deck/boat.qsb"));
    EXPECT_TRUE(loaded.lostTextures.empty());
    EXPECT_EQ(loaded.FindTexture("Q:\\art\\stone.png"), "deck/stone.png");
    EXPECT_EQ(loaded.FindTexture("Q:\\art\\gone.png"), "");
    ASSERT_EQ(loaded.warnings.Kept().size(), 1u);
    EXPECT_EQ(loaded.warnings.Kept()[0].text, "Texture 'Q:\\art\\stone.png' is not in its place, "
                                              "taken from beside the scene: 'stone.png'");
}

TEST_F(LoadedSceneTest, PicturesOfTheSameNameInTwoDirectoriesAreDifferent)
{
    fs::create_directory("a");
    fs::create_directory("b");
    const std::string source = SourcePath("examples/");
    fs::copy_file(source + "stone.png", "a/map.png");
    fs::copy_file(source + "crate.png", "b/map.png");
    // Equal sizes in bytes: otherwise the engine would not take them for the same.
    const auto size = std::max(fs::file_size("a/map.png"), fs::file_size("b/map.png"));
    fs::resize_file("a/map.png", size);
    fs::resize_file("b/map.png", size);
    directory.Write("a/a.qsb", MakeQsb(TexturedFile({"map.png"})).bytes);
    directory.Write("b/b.qsb", MakeQsb(TexturedFile({"map.png"})).bytes);
    LoadedScene first;
    LoadedScene second;
    ASSERT_TRUE(first.Load("a/a.qsb"));
    ASSERT_TRUE(second.Load("b/b.qsb"));
    const KRE_Texture& ofFirst = first.scene.meshes.Get(0)->textures[0];
    const KRE_Texture& ofSecond = second.scene.meshes.Get(0)->textures[0];
    ASSERT_NE(ofFirst.slotTextures[0], nullptr);
    EXPECT_NE(ofFirst.slotTextures[0], ofSecond.slotTextures[0]);
}
