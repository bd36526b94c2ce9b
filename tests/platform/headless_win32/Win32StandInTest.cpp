#include "platform/headless/win32/JoinArguments.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/ScratchDirectory.h"

#include <commdlg.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <utility>
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

TEST(Registry, TypeAndSizeMayBeAskedForAlone)
{
    const RegistryValues values({{"Other", "a=b\r"}, {"Plain", "c"}});
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Fenwhistle\\QSAView", 0, KEY_READ, &key),
              ERROR_SUCCESS);
    DWORD type = 0;
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "Other", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(size, 4u) << "the end of a line is no part of the value";
    RegCloseKey(key);
}

TEST(Registry, OtherKeysAndRightsAreNotThere)
{
    const RegistryValues values({{"Other", "a"}, {"More", "b"}});
    HKEY key = nullptr;
    const auto open = [&](HKEY hive, const char* name, DWORD access) {
        return RegOpenKeyExA(hive, name, 0, access, &key);
    };
    EXPECT_EQ(open(nullptr, "Software\\A", KEY_READ), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(open(HKEY_CURRENT_USER, "Software\\A", 0), ERROR_INVALID_PARAMETER);
    for (const char* const name : {"Hardware\\A", "Software", "Software\\", "Software\\A"})
        EXPECT_EQ(open(HKEY_CURRENT_USER, name, KEY_READ), ERROR_FILE_NOT_FOUND) << name;
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

TEST(FindFirstFileA, NamesThatNoFileHasAreNoPath)
{
    const ScratchDirectory scratch;
    WIN32_FIND_DATAA entry;
    for (const std::string& pattern : {std::string("folder/"), std::string(300, 'a')}) {
        EXPECT_EQ(FindFirstFileA(pattern.c_str(), &entry), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND)) << pattern;
    }
    EXPECT_EQ(FindFirstFileA("gone/*.qsa", &entry), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST(HandlesOfFiles, ThoseThatAreNoneAreRefused)
{
    const ScratchDirectory scratch;
    scratch.Write("a", "");
    for (const HANDLE handle : {HANDLE(nullptr), INVALID_HANDLE_VALUE}) {
        WIN32_FIND_DATAA entry;
        BY_HANDLE_FILE_INFORMATION info;
        char path[8];
        SetLastError(0);
        EXPECT_FALSE(FindNextFileA(handle, &entry));
        EXPECT_FALSE(FindClose(handle));
        EXPECT_FALSE(GetFileInformationByHandle(handle, &info));
        EXPECT_FALSE(CloseHandle(handle));
        EXPECT_EQ(GetFinalPathNameByHandleA(handle, path, sizeof path, 0), 0u);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    }
    for (const auto& [access, disposition] :
         {std::pair<DWORD, DWORD>{1, OPEN_EXISTING}, {0, OPEN_EXISTING + 1}}) {
        EXPECT_EQ(CreateFileA("a", access, 0, nullptr, disposition, 0, nullptr),
                  INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    }
}

TEST(GetFileAttributesA, TellsFoldersAndWhatIsReadOnly)
{
    const ScratchDirectory scratch;
    scratch.Write("a", "");
    scratch.Write(".h/b", "");
    EXPECT_EQ(GetFileAttributesA("A"), static_cast<DWORD>(FILE_ATTRIBUTE_ARCHIVE));
    EXPECT_EQ(GetFileAttributesA(".h"),
              static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN));
    fs::permissions("a", fs::perms::owner_read);
    EXPECT_EQ(GetFileAttributesA("a"),
              static_cast<DWORD>(FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(GetFileAttributesA("gone"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(GetFileAttributesA("a\\b"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND)) << "a is no folder";
    EXPECT_FALSE(DeleteFileA("gone"));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_FALSE(MoveFileExA("gone", "b", 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_FALSE(SetCurrentDirectoryA("a"));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
}

TEST(Windows, ThoseThatAreNoneHaveNothing)
{
    WNDCLASSEXA windowClass = {};
    EXPECT_EQ(RegisterClassExA(&windowClass), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    windowClass.cbSize = sizeof windowClass;
    EXPECT_EQ(RegisterClassExA(&windowClass), 0u) << "it has no procedure";
    SetLastError(0);
    EXPECT_FALSE(UnregisterClassA("no such class", nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(
        CreateWindowExA(0, "no such class", "t", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr),
        nullptr);
    RECT rect;
    char text[8];
    PAINTSTRUCT paint;
    SetLastError(0);
    EXPECT_FALSE(DestroyWindow(nullptr));
    EXPECT_FALSE(ShowWindow(nullptr, 1));
    EXPECT_FALSE(UpdateWindow(nullptr));
    EXPECT_FALSE(RedrawWindow(nullptr, nullptr, nullptr, 0));
    EXPECT_FALSE(GetClientRect(nullptr, &rect));
    EXPECT_FALSE(MoveWindow(nullptr, 0, 0, 1, 1, FALSE));
    EXPECT_FALSE(SetWindowTextA(nullptr, "t"));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    EXPECT_EQ(GetWindowTextA(nullptr, text, sizeof text), 0);
    EXPECT_EQ(GetWindowLongA(nullptr, GWL_STYLE), 0);
    EXPECT_EQ(GetMenu(nullptr), nullptr);
    EXPECT_EQ(BeginPaint(nullptr, &paint), nullptr);
    EXPECT_FALSE(EndPaint(nullptr, &paint));
}

TEST(LoadStringA, UnknownTextsAreEmpty)
{
    char text[8] = "before";
    EXPECT_EQ(LoadStringA(nullptr, 65535, text, 0), 0);
    EXPECT_STREQ(text, "before") << "there is no room";
    EXPECT_EQ(LoadStringA(nullptr, 65535, text, sizeof text), 0);
    EXPECT_STREQ(text, "");
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
