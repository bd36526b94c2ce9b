#include <windows.h>

#include "tests/qsb/SceneFileTest.h"

namespace {

using AbandonedFileTest = SceneFileTest;

std::string NameOf(const std::string& computer, DWORD processId)
{
    return ".qsa2qsb-" + computer + "-" + std::to_string(processId) + "-0.tmp";
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
    const std::string gone = NameOf(ThisComputer(), kNoProcess);
    const std::string running = NameOf(ThisComputer(), GetCurrentProcessId());
    const std::string elsewhere = NameOf("OTHER" + ThisComputer(), kNoProcess);
    for (const std::string& name : {gone, running, elsewhere, std::string(".qsa2qsb-notes")})
        directory.Write(name, "half");
    KRE_3dScene scene;
    gGfx->SaveScene(scene, "boat.qsb");
    EXPECT_FALSE(directory.Has(gone));
    EXPECT_TRUE(directory.Has(running));
    EXPECT_TRUE(directory.Has(elsewhere));
    EXPECT_TRUE(directory.Has(".qsa2qsb-notes"));
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
