#include "tools/pictures/PictureTwins.h"

#include "tests/support/ScratchDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

/// "FIRST SECOND PICTURE", or nothing.
std::string Twins(const std::vector<std::string>& options, const std::vector<std::string>& names)
{
    const auto twins = FindPictureTwins(options, names);
    return twins ? twins->first + " " + twins->second + " " + twins->picture : "";
}

class PictureTwinsTest : public testing::Test {
protected:
    PictureTwinsTest()
    {
        for (const char* name : {"a/boat.qsa", "b/boat.qsa", "b/cleat.qsa", "c/x/boat.qsa",
                                 "d/x/boat.qsa", "d/Boat.qsa"})
            scratch.Write(name, "");
    }

    const ScratchDirectory scratch;
};

} // namespace

TEST_F(PictureTwinsTest, FilesOfOneNameAreTwins)
{
    EXPECT_EQ(Twins({}, {"a/boat.qsa", "b/boat.qsa"}), "a/boat.qsa b/boat.qsa boat.qsa.png");
    EXPECT_EQ(Twins({}, {"b\\*.qsa", "a/BOAT.qsa"}), "b\\*.qsa a/BOAT.qsa boat.qsa.png");
    EXPECT_EQ(Twins({}, {"a/boat.qsa", "a/boat.qsa"}), "a/boat.qsa a/boat.qsa boat.qsa.png");
    EXPECT_EQ(std::filesystem::current_path(), scratch.Path());
}

TEST_F(PictureTwinsTest, OtherNamesAreNotTwins)
{
    EXPECT_EQ(Twins({}, {"a/boat.qsa", "b/cleat.qsa"}), "");
    EXPECT_EQ(Twins({}, {"a/boat.qsa", "d/Boat.qsa"}), "") << "two files where case tells";
    EXPECT_EQ(Twins({}, {"a/boat.qsa", "absent/boat.qsa", "absent.qsa"}), "");
    EXPECT_EQ(Twins({}, {"b/*.qsa"}), "");
    EXPECT_EQ(Twins({}, {}), "");
}

TEST_F(PictureTwinsTest, TreesCountWithTheirDirectoriesAndOnlyWithS)
{
    EXPECT_EQ(Twins({}, {"c/*.qsa", "d/*.qsa"}), "");
    EXPECT_EQ(Twins({"/S"}, {"c/*.qsa", "d/*.qsa"}), "c/*.qsa d/*.qsa x/boat.qsa.png");
    EXPECT_EQ(Twins({"/s"}, {"a/boat.qsa", "c/*.qsa"}), "");
}

TEST_F(PictureTwinsTest, WhatNoLeavesAloneGivesNoPicture)
{
    scratch.Write("b/boat.qsb", "");
    EXPECT_EQ(Twins({"/no"}, {"a/boat.qsa", "b/boat.qsa"}), "");
    EXPECT_NE(Twins({}, {"a/boat.qsa", "b/boat.qsa"}), "");
}
