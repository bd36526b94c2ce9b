#include "platform/headless/win32/JoinArguments.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/ScratchDirectory.h"

#include <commdlg.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <windows.h>

using namespace headless;

namespace fs = std::filesystem;

TEST(JoinArguments, QuotesWhatTheProgramWouldMisread)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", "");
    const std::string absolute = (scratch.Path() / "a.qsa").string();
    const char* const arguments[] = {"*.qsa", "/s", "my boat.qsa", absolute.c_str(), "", "/zn:2.5"};
    EXPECT_EQ(JoinArguments(6, arguments), "*.qsa /s \"my boat.qsa\" \"" + absolute + "\" /zn:2.5");
}

TEST(JoinArguments, PathInTheRootDirectoryIsRecognisedByItsExistence)
{
    const char* const arguments[] = {"/etc", "/no-such-option"};
    EXPECT_EQ(JoinArguments(2, arguments), "\"/etc\" /no-such-option");
}

TEST(MessageBoxA, WritesToStandardErrorAndReturnsOk)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(MessageBoxA(nullptr, "two\nlines", "Title", MB_OK), IDOK);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Title\ntwo\nlines\n");
}

TEST(FileDialogs, AreCancelled)
{
    OPENFILENAMEA dialog = {};
    EXPECT_FALSE(GetOpenFileNameA(&dialog));
    EXPECT_FALSE(GetSaveFileNameA(&dialog));
}

TEST(Registry, ReadsTheKeyFile)
{
    const RegistryValues values({{"DefaultBasePath", "/srv/maps"}, {"Other", "a=b"}});
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Fenwhistle\\QSAView", 0, KEY_READ, &key),
              ERROR_SUCCESS);
    char text[64];
    DWORD size = sizeof text;
    const auto bytes = reinterpret_cast<BYTE*>(text);
    EXPECT_EQ(RegQueryValueExA(key, "defaultbasepath", nullptr, nullptr, bytes, &size), 0);
    EXPECT_STREQ(text, "/srv/maps");
    EXPECT_EQ(size, 10u);
    size = sizeof text;
    EXPECT_EQ(RegQueryValueExA(key, "Other", nullptr, nullptr, bytes, &size), 0);
    EXPECT_STREQ(text, "a=b");
    size = 3;
    EXPECT_EQ(RegQueryValueExA(key, "Other", nullptr, nullptr, bytes, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(RegQueryValueExA(key, "None", nullptr, nullptr, bytes, &size), ERROR_FILE_NOT_FOUND);
    RegCloseKey(key);
}

TEST(Registry, MissingFileIsAMissingKey)
{
    const RegistryValues values({});
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Fenwhistle\\QSAView", 0, KEY_READ, &key),
              ERROR_FILE_NOT_FOUND);
}

TEST(FindFirstFileA, GivesDotsFirstThenByteOrder)
{
    const ScratchDirectory scratch;
    for (const char* name : {"b", "a", "B", ".h"})
        scratch.Write(name, "12345");
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA("*.*", &entry);
    std::string names;
    do {
        names += std::string(entry.cFileName) + " ";
        const bool isHidden = (entry.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
        EXPECT_EQ(isHidden, std::string(entry.cFileName) == ".h");
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    EXPECT_EQ(names, ". .. .h B a b ");
}

TEST(FindFirstFileA, DanglingLinksAreLeftOut)
{
    const ScratchDirectory scratch;
    fs::create_symlink("nowhere", "link");
    WIN32_FIND_DATAA entry;
    EXPECT_EQ(FindFirstFileA("l*", &entry), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST(FindFirstFileA, SearchesOtherDirectories)
{
    const ScratchDirectory scratch;
    scratch.Write("Deck/Boat.qsa", "12345");
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA("deck\\*.QSA", &entry);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_STREQ(entry.cFileName, "Boat.qsa");
    EXPECT_EQ(entry.nFileSizeLow, 5u);
    FindClose(search);
}

TEST(GetCurrentDirectoryA, ReportsTheSizeItNeeds)
{
    const ScratchDirectory scratch;
    const std::string path = scratch.Path().string();
    const auto length = static_cast<DWORD>(path.size());
    EXPECT_EQ(GetCurrentDirectoryA(0, nullptr), length + 1);
    std::string buffer(path.size() + 1, 'x');
    EXPECT_EQ(GetCurrentDirectoryA(length, buffer.data()), length + 1);
    EXPECT_EQ(GetCurrentDirectoryA(length + 1, buffer.data()), length);
    EXPECT_STREQ(buffer.c_str(), path.c_str());
}

TEST(GetCurrentDirectoryA, RemovedDirectoryHasNoPath)
{
    const ScratchDirectory scratch;
    fs::create_directory("gone");
    fs::current_path("gone");
    fs::remove(scratch.Path() / "gone");
    EXPECT_EQ(GetCurrentDirectoryA(0, nullptr), 0u);
    fs::current_path(scratch.Path());
}

TEST(GetFinalPathNameByHandleA, IsThePathWithoutLinks)
{
    const ScratchDirectory scratch;
    fs::create_directory("deck");
    fs::create_directory_symlink("deck", "link");
    const HANDLE file = CreateFileA("LINK", 0, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    const std::string expected = fs::canonical("deck").string();
    const auto length = static_cast<DWORD>(expected.size());
    EXPECT_EQ(GetFinalPathNameByHandleA(file, nullptr, 0, FILE_NAME_NORMALIZED), length + 1);
    std::string buffer(expected.size() + 1, 'x');
    EXPECT_EQ(GetFinalPathNameByHandleA(file, buffer.data(), length + 1, FILE_NAME_NORMALIZED),
              length);
    EXPECT_STREQ(buffer.c_str(), expected.c_str());
    CloseHandle(file);
    EXPECT_EQ(GetFinalPathNameByHandleA(INVALID_HANDLE_VALUE, nullptr, 0, 0), 0u);
}

TEST(MoveFileExA, ReplacesOnlyWhenAsked)
{
    const ScratchDirectory scratch;
    scratch.Write("a", "new");
    scratch.Write("b", "old");
    EXPECT_FALSE(MoveFileExA("a", "b", 0));
    EXPECT_EQ(scratch.Read("b"), "old");
    EXPECT_TRUE(MoveFileExA("a", "b", MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ(scratch.Read("b"), "new");
}

TEST(LoadLibraryA, KnowsOnlyTheLibrariesOfThisHost)
{
    EXPECT_NE(LoadLibraryA("D3D9.dll"), nullptr);
    EXPECT_NE(LoadLibraryA("d3dx9_30.dll"), nullptr);
    EXPECT_EQ(LoadLibraryA("d3d10.dll"), nullptr);
}
