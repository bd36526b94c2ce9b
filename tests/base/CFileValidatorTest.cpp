#include "base/CFileValidator.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/ScratchDirectory.h"

namespace {

class CFileValidatorTest : public testing::Test {
protected:
    std::string Resolve(const std::string& name) const
    {
        return validator.Resolve(name.c_str()).c_str();
    }

    ScratchDirectory scratch;
    CFileValidator validator;
};

TEST_F(CFileValidatorTest, NameAsGivenWinsOverItsExtensions)
{
    scratch.Write("shiny.fx", "");
    scratch.Write("shiny.fxo", "");
    validator.AddExtension("fxo");
    validator.AddExtension("fx");
    String path("old");
    EXPECT_TRUE(validator.Exists("shiny.fx", &path));
    EXPECT_STREQ(path.c_str(), "shiny.fx");
    EXPECT_TRUE(validator.Exists("shiny", &path));
    EXPECT_STREQ(path.c_str(), "shiny.fxo") << "the first extension that is there";
    EXPECT_TRUE(validator.Exists("shiny.png", &path));
    EXPECT_STREQ(path.c_str(), "shiny.fxo");
    EXPECT_FALSE(validator.Exists("dull.fx", &path));
    EXPECT_STREQ(path.c_str(), "") << "emptied";
    scratch.Write("shiny", "");
    EXPECT_TRUE(validator.Exists("shiny", &path));
    EXPECT_STREQ(path.c_str(), "shiny");
}

TEST_F(CFileValidatorTest, EmptyNameGivesAnEmptyResult)
{
    validator.AddExtension("fx");
    scratch.Write(".fx", "");
    EXPECT_EQ(Resolve(""), "");
}

TEST_F(CFileValidatorTest, EmptyBasePathTriesTheBareNameInTheCurrentDirectory)
{
    scratch.Write("boat.png", "");
    validator.SetBasePath("");
    EXPECT_EQ(Resolve("boat.png"), "boat.png");
}

TEST_F(CFileValidatorTest, WithoutDirectoriesOnlyTheBasePathIsSearched)
{
    scratch.Write("scene/boat.png", "");
    scratch.Write("other/sail.png", "");
    scratch.Write("here.png", "");
    validator.SetBasePath("scene");
    EXPECT_EQ(Resolve("boat.png"), "scene\\boat.png");
    EXPECT_EQ(Resolve("sail.png"), "");
    EXPECT_EQ(Resolve("here.png"), "") << "the current directory is not searched";
}

TEST_F(CFileValidatorTest, FileBesideTheSceneWinsThenTheDirectoriesInOrder)
{
    scratch.Write("first/a.png", "");
    scratch.Write("second/a.png", "");
    scratch.Write("second/b.png", "");
    scratch.Write("scene/c.png", "");
    scratch.Write("first/c.png", "");
    validator.AddDirectory("first", false);
    validator.AddDirectory("second/", false);
    validator.SetBasePath("scene/");
    EXPECT_EQ(Resolve("a.png"), "first\\a.png");
    EXPECT_EQ(Resolve("b.png"), "second/b.png");
    EXPECT_EQ(Resolve("c.png"), "scene/c.png");
}

TEST_F(CFileValidatorTest, LeafIsSearchedOnlyInDirectoriesThatAllowIt)
{
    scratch.Write("base/boat.png", "");
    scratch.Write("leaf/boat.png", "");
    scratch.Write("base/maps/sail.png", "");
    scratch.Write("leaf/sail.png", "");
    validator.AddDirectory("base", false);
    validator.AddDirectory("leaf", true);
    EXPECT_EQ(Resolve("maps/boat.png"), "leaf\\boat.png");
    EXPECT_EQ(Resolve("maps/sail.png"), "base\\maps/sail.png") << "with its directory first";
    EXPECT_EQ(Resolve("maps\\none.png"), "");
    EXPECT_EQ(Resolve("boat.png"), "base\\boat.png");
}

TEST_F(CFileValidatorTest, AbsoluteNameFindsACopyOfItsLeafIfThatIsAllowed)
{
    scratch.Write("base/boat.png", "");
    scratch.Write("leaf/boat.png", "");
    scratch.Write("here.png", "");
    validator.AddDirectory("base", false);
    EXPECT_EQ(Resolve("Q:\\art\\boat.png"), "");
    validator.AddDirectory("leaf", true);
    EXPECT_EQ(Resolve("Q:\\art\\boat.png"), "leaf\\boat.png");
    EXPECT_EQ(Resolve("/nowhere/boat.png"), "leaf\\boat.png");
    const std::string here = (scratch.Path() / "here.png").string();
    EXPECT_EQ(Resolve(here), here) << "as it is where it exists";
}

TEST_F(CFileValidatorTest, AbsoluteNameWithoutADirectoryIsTriedAsItIsOnly)
{
    // A colon makes a name absolute, and without a separator the whole name is the leaf. On hosts
    // with drives such a name is a file in the drive's current directory; elsewhere it is a file
    // like any other.
    const std::string drive = std::filesystem::current_path().root_name().string();
    const std::string name = (drive.empty() ? "Q:" : drive) + "q.png";
    validator.SetBasePath("scene");
    validator.AddDirectory("leaf", true);
    for (const char* directory : {"scene/", "leaf/"}) {
        scratch.Write(std::string(directory) + "q.png", "");
        if (drive.empty())
            scratch.Write(directory + name, "");
    }
    EXPECT_EQ(Resolve(name), "") << "neither beside the scene nor in a search directory";
    scratch.Write(drive.empty() ? name : "q.png", "");
    EXPECT_EQ(Resolve(name), name) << "as it is where it exists";
}

TEST_F(CFileValidatorTest, AlternativeExtensionsAreTriedInEachPlace)
{
    scratch.Write("leaf/shiny.fxo", "");
    validator.AddDirectory("leaf", true);
    validator.AddExtension("fxo");
    EXPECT_EQ(Resolve("shiny.fx"), "leaf\\shiny.fxo");
    EXPECT_EQ(Resolve("Q:\\art\\shiny.fx"), "leaf\\shiny.fxo");
    scratch.Write("shiny.fxo", "");
    EXPECT_EQ(Resolve("shiny.fx"), "shiny.fxo") << "beside the scene, whatever its extension";
}

TEST_F(CFileValidatorTest, DirectoriesAreNotFiles)
{
    scratch.Write("boat.png/inner", "");
    EXPECT_EQ(Resolve("boat.png"), "");
}

TEST_F(CFileValidatorTest, NamesOfAnyLengthAreSafe)
{
    EXPECT_EQ(Resolve(std::string(300, 'n')), "");
    EXPECT_EQ(Resolve(std::string(5000, 'n') + "/x"), "");
}

TEST_F(CFileValidatorTest, ClearForgetsListsAndBasePath)
{
    scratch.Write("scene/a.png", "");
    scratch.Write("dir/b.png", "");
    scratch.Write("c.fx", "");
    validator.SetBasePath("scene");
    validator.AddDirectory("dir", true);
    validator.AddExtension("fx");
    validator.Clear();
    EXPECT_EQ(Resolve("a.png"), "");
    EXPECT_EQ(Resolve("b.png"), "");
    EXPECT_EQ(Resolve("c.png"), "");
    EXPECT_EQ(Resolve("c.fx"), "c.fx") << "the base path is the current directory again";
}

} // namespace
