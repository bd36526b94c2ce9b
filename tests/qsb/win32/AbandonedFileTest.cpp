#include <windows.h>

#include "platform/ReplacementFile.h"
#include "tests/qsb/SceneFileTest.h"

#include <chrono>
#include <filesystem>
#include <regex>

namespace {

using AbandonedFileTest = SceneFileTest;

/// What the name of a temporary file of this process holds: ".qsa2qsb-COMPUTER-BOOT-PROCESS-NUMBER.tmp".
struct OwnName {
    std::string computer; ///< may hold hyphens
    std::string boot;
    std::string process;
};

OwnName ReadOwnName()
{
    // Beside the first file of a directory, abandoned ones are removed; so this is made in another.
    std::filesystem::create_directory("other");
    ReplacementFile file;
    EXPECT_TRUE(file.Make("other/any.qsb"));
    const std::string name = std::filesystem::path(file.Path()).filename().string();
    std::smatch parts;
    EXPECT_TRUE(std::regex_match(name, parts, std::regex(R"(\.qsa2qsb-(.+)-(\d+)-(\d+)-\d+\.tmp)")))
        << name;
    return {parts[1], parts[2], parts[3]};
}

std::string NameOf(const std::string& computer, const std::string& boot, DWORD processId)
{
    return ".qsa2qsb-" + computer + "-" + boot + "-" + std::to_string(processId) + "-0.tmp";
}

void MakeOlder(const std::string& path, int hours)
{
    namespace fs = std::filesystem;
    fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(hours));
}

} // namespace

TEST_F(AbandonedFileTest, OnlyFilesOfEndedProcessesAreRemoved)
{
    constexpr DWORD kNoProcess = 0xFFFFFFF0;
    const OwnName own = ReadOwnName();
    EXPECT_EQ(own.process, std::to_string(GetCurrentProcessId()));
    const std::string gone = NameOf(own.computer, own.boot, kNoProcess);
    const std::string running = NameOf(own.computer, own.boot, GetCurrentProcessId());
    const std::string elsewhere = NameOf("OTHER" + own.computer, own.boot, kNoProcess);
    for (const std::string& name : {gone, running, elsewhere, std::string(".qsa2qsb-notes")})
        directory.Write(name, "half");
    KRE_3dScene scene;
    gGfx->SaveScene(scene, "boat.qsb");
    EXPECT_FALSE(directory.Has(gone));
    EXPECT_TRUE(directory.Has(running));
    EXPECT_TRUE(directory.Has(elsewhere));
    EXPECT_TRUE(directory.Has(".qsa2qsb-notes"));
}

TEST_F(AbandonedFileTest, FilesOfOtherComputersAreLeftAloneForADay)
{
    const std::string young = NameOf("OTHER", "1", 7);
    const std::string old = NameOf("OTHER", "1", 8);
    for (const std::string& name : {young, old})
        directory.Write(name, "half");
    MakeOlder(young, 23);
    MakeOlder(old, 25);
    KRE_3dScene scene;
    gGfx->SaveScene(scene, "boat.qsb");
    EXPECT_TRUE(directory.Has(young));
    EXPECT_FALSE(directory.Has(old));
}

TEST_F(AbandonedFileTest, AWriteProtectedTargetIsKept)
{
    directory.Write("boat.qsb", "old");
    SetFileAttributesA("boat.qsb", FILE_ATTRIBUTE_READONLY);
    KRE_3dScene scene;
    EXPECT_EQ(ErrorText([&] { gGfx->SaveScene(scene, "boat.qsb"); }),
              "boat.qsb: File is not writeable");
    EXPECT_EQ(directory.Read("boat.qsb"), "old");
    SetFileAttributesA("boat.qsb", FILE_ATTRIBUTE_NORMAL);
}
