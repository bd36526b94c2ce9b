#include <windows.h>

#include "tests/qsb/SceneFileTest.h"

#include <chrono>
#include <filesystem>

namespace {

using AbandonedFileTest = SceneFileTest;

std::string NameOf(const std::string& computer, DWORD boot, DWORD processId)
{
    return ".qsa2qsb-" + computer + "-" + std::to_string(boot) + "-" + std::to_string(processId) +
           "-0.tmp";
}

/// 0 under Wine, which does not count its starts.
DWORD ThisBoot()
{
    DWORD number = 0;
    DWORD size = sizeof number;
    RegGetValueA(HKEY_LOCAL_MACHINE,
                 "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management"
                 "\\PrefetchParameters",
                 "BootId", RRF_RT_REG_DWORD, nullptr, &number, &size);
    return number;
}

void MakeOlder(const std::string& path, int hours)
{
    namespace fs = std::filesystem;
    fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(hours));
}

std::string ThisComputer()
{
    char name[MAX_COMPUTERNAME_LENGTH + 1] = "";
    DWORD size = sizeof name;
    GetComputerNameA(name, &size);
    return name;
}

} // namespace

TEST_F(AbandonedFileTest, OnlyFilesOfEndedProcessesAreRemoved)
{
    constexpr DWORD kNoProcess = 0xFFFFFFF0;
    const std::string gone = NameOf(ThisComputer(), ThisBoot(), kNoProcess);
    const std::string running = NameOf(ThisComputer(), ThisBoot(), GetCurrentProcessId());
    const std::string elsewhere = NameOf("OTHER" + ThisComputer(), ThisBoot(), kNoProcess);
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
    const std::string young = NameOf("OTHER", ThisBoot(), 7);
    const std::string old = NameOf("OTHER", ThisBoot(), 8);
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
