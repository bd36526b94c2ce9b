#include <windows.h>

#include <commdlg.h>

#include <cstddef>
#include <gtest/gtest.h>

// Compiled against the system's headers on Windows and this project's stand-ins elsewhere: a
// mismatch in either breaks the build. The numbers are the published ones.

// --- basic types

static_assert(sizeof(BYTE) == 1 && sizeof(UCHAR) == 1 && sizeof(CHAR) == 1);
static_assert(sizeof(WORD) == 2 && sizeof(USHORT) == 2 && sizeof(SHORT) == 2 && sizeof(ATOM) == 2);
static_assert(sizeof(DWORD) == 4 && sizeof(UINT) == 4 && sizeof(ULONG) == 4);
static_assert(sizeof(INT) == 4 && sizeof(LONG) == 4 && sizeof(BOOL) == 4 && sizeof(FLOAT) == 4);
static_assert(sizeof(HRESULT) == 4 && sizeof(LSTATUS) == 4);
static_assert(sizeof(LONGLONG) == 8 && sizeof(LARGE_INTEGER) == 8);
static_assert(sizeof(SIZE_T) == 8 && sizeof(UINT_PTR) == 8 && sizeof(INT_PTR) == 8);
static_assert(sizeof(WPARAM) == 8 && sizeof(LPARAM) == 8 && sizeof(LRESULT) == 8);
static_assert(sizeof(HANDLE) == 8 && sizeof(HWND) == 8 && sizeof(WNDPROC) == 8);

static_assert(static_cast<LONG>(-1) < 0 && static_cast<INT>(-1) < 0 && static_cast<BOOL>(-1) < 0);
static_assert(static_cast<HRESULT>(-1) < 0 && static_cast<LPARAM>(-1) < 0);
static_assert(static_cast<DWORD>(-1) > 0 && static_cast<UINT>(-1) > 0 &&
              static_cast<ULONG>(-1) > 0);
static_assert(static_cast<WPARAM>(-1) > 0 && static_cast<SIZE_T>(-1) > 0);

static_assert(offsetof(LARGE_INTEGER, u.LowPart) == 0);
static_assert(offsetof(LARGE_INTEGER, u.HighPart) == 4);
static_assert(offsetof(LARGE_INTEGER, QuadPart) == 0);

static_assert(LOWORD(0x12345678) == 0x5678);
static_assert(HIWORD(0x12345678) == 0x1234);
static_assert(SUCCEEDED(S_OK) && SUCCEEDED(S_FALSE) && !SUCCEEDED(E_FAIL));
static_assert(FAILED(E_FAIL) && FAILED(E_OUTOFMEMORY) && !FAILED(S_FALSE));
static_assert(FALSE == 0 && TRUE == 1);

// --- values

static_assert(MAX_PATH == 260);

static_assert(static_cast<DWORD>(S_OK) == 0x00000000);
static_assert(static_cast<DWORD>(S_FALSE) == 0x00000001);
static_assert(static_cast<DWORD>(E_NOTIMPL) == 0x80004001);
static_assert(static_cast<DWORD>(E_NOINTERFACE) == 0x80004002);
static_assert(static_cast<DWORD>(E_POINTER) == 0x80004003);
static_assert(static_cast<DWORD>(E_FAIL) == 0x80004005);
static_assert(static_cast<DWORD>(E_OUTOFMEMORY) == 0x8007000E);
static_assert(static_cast<DWORD>(E_INVALIDARG) == 0x80070057);

static_assert(ERROR_SUCCESS == 0);
static_assert(ERROR_FILE_NOT_FOUND == 2);
static_assert(ERROR_PATH_NOT_FOUND == 3);
static_assert(ERROR_ACCESS_DENIED == 5);
static_assert(ERROR_INVALID_HANDLE == 6);
static_assert(ERROR_NO_MORE_FILES == 18);
static_assert(ERROR_INVALID_PARAMETER == 87);
static_assert(ERROR_MORE_DATA == 234);

static_assert(FILE_ATTRIBUTE_READONLY == 1);
static_assert(FILE_ATTRIBUTE_HIDDEN == 2);
static_assert(FILE_ATTRIBUTE_SYSTEM == 4);
static_assert(FILE_ATTRIBUTE_DIRECTORY == 0x10);
static_assert(FILE_ATTRIBUTE_ARCHIVE == 0x20);
static_assert(FILE_NAME_NORMALIZED == 0);
static_assert(static_cast<DWORD>(INVALID_FILE_ATTRIBUTES) == 0xFFFFFFFF);

static_assert(FILE_SHARE_READ == 1);
static_assert(FILE_SHARE_WRITE == 2);
static_assert(FILE_SHARE_DELETE == 4);
static_assert(OPEN_EXISTING == 3);
static_assert(FILE_FLAG_BACKUP_SEMANTICS == 0x2000000);
static_assert(MOVEFILE_REPLACE_EXISTING == 1);

static_assert(KEY_READ == 0x20019);
static_assert(REG_SZ == 1);

static_assert(CS_VREDRAW == 1);
static_assert(CS_HREDRAW == 2);
static_assert(WS_OVERLAPPED == 0);
static_assert(static_cast<DWORD>(WS_POPUP) == 0x80000000);
static_assert(WS_CAPTION == 0xC00000);
static_assert(WS_SYSMENU == 0x80000);
static_assert(WS_THICKFRAME == 0x40000);
static_assert(WS_MINIMIZEBOX == 0x20000);
static_assert(WS_MAXIMIZEBOX == 0x10000);
static_assert(WS_OVERLAPPEDWINDOW == 0xCF0000);
static_assert(static_cast<DWORD>(CW_USEDEFAULT) == 0x80000000);
static_assert(COLOR_WINDOW == 5);
static_assert(SW_HIDE == 0);
static_assert(SW_SHOWNORMAL == 1);
static_assert(SW_SHOWDEFAULT == 10);

static_assert(WM_NULL == 0);
static_assert(WM_CREATE == 1);
static_assert(WM_DESTROY == 2);
static_assert(WM_SIZE == 5);
static_assert(WM_ENABLE == 0xA);
static_assert(WM_PAINT == 0xF);
static_assert(WM_CLOSE == 0x10);
static_assert(WM_QUIT == 0x12);
static_assert(WM_ERASEBKGND == 0x14);
static_assert(WM_ACTIVATEAPP == 0x1C);
static_assert(WM_KEYDOWN == 0x100);
static_assert(WM_KEYUP == 0x101);
static_assert(WM_CHAR == 0x102);
static_assert(WM_INITDIALOG == 0x110);
static_assert(WM_COMMAND == 0x111);
static_assert(WM_ENTERMENULOOP == 0x211);
static_assert(WM_EXITMENULOOP == 0x212);
static_assert(WM_ENTERSIZEMOVE == 0x231);
static_assert(WM_EXITSIZEMOVE == 0x232);
static_assert(WM_USER == 0x400);
static_assert(SIZE_RESTORED == 0);
static_assert(SIZE_MINIMIZED == 1);
static_assert(SIZE_MAXIMIZED == 2);
static_assert(SIZE_MAXSHOW == 3);
static_assert(SIZE_MAXHIDE == 4);

static_assert(DT_CENTER == 1);
static_assert(RDW_INVALIDATE == 1);
static_assert(RDW_ERASE == 4);
static_assert(RDW_ALLCHILDREN == 0x80);
static_assert(RDW_UPDATENOW == 0x100);
static_assert(PM_NOREMOVE == 0);
static_assert(PM_REMOVE == 1);
static_assert(MB_OK == 0);
static_assert(IDOK == 1);
static_assert(IDCANCEL == 2);
static_assert(VK_CANCEL == 0x3);
static_assert(VK_SHIFT == 0x10);
static_assert(VK_CONTROL == 0x11);
static_assert(VK_ESCAPE == 0x1B);
static_assert(VK_PRIOR == 0x21);
static_assert(VK_NEXT == 0x22);
static_assert(VK_LEFT == 0x25);
static_assert(VK_UP == 0x26);
static_assert(VK_RIGHT == 0x27);
static_assert(VK_DOWN == 0x28);
static_assert(VK_SNAPSHOT == 0x2C);
static_assert(VK_MULTIPLY == 0x6A);
static_assert(VK_ADD == 0x6B);
static_assert(VK_SUBTRACT == 0x6D);
static_assert(VK_DIVIDE == 0x6F);
static_assert(sizeof(DLGPROC) == 8);

static_assert(GWL_STYLE == -16);
static_assert(GWL_EXSTYLE == -20);

static_assert(OFN_READONLY == 1);
static_assert(OFN_FILEMUSTEXIST == 0x1000);

// --- records

static_assert(sizeof(RECT) == 16);
static_assert(offsetof(RECT, left) == 0);
static_assert(offsetof(RECT, top) == 4);
static_assert(offsetof(RECT, right) == 8);
static_assert(offsetof(RECT, bottom) == 12);

static_assert(sizeof(POINT) == 8);
static_assert(offsetof(POINT, x) == 0);
static_assert(offsetof(POINT, y) == 4);

static_assert(sizeof(SIZE) == 8);
static_assert(offsetof(SIZE, cx) == 0);
static_assert(offsetof(SIZE, cy) == 4);

static_assert(sizeof(FILETIME) == 8);
static_assert(offsetof(FILETIME, dwLowDateTime) == 0);
static_assert(offsetof(FILETIME, dwHighDateTime) == 4);

static_assert(sizeof(GUID) == 16);
static_assert(offsetof(GUID, Data1) == 0);
static_assert(offsetof(GUID, Data2) == 4);
static_assert(offsetof(GUID, Data3) == 6);
static_assert(offsetof(GUID, Data4) == 8);

static_assert(sizeof(WIN32_FIND_DATAA) == 320);
static_assert(offsetof(WIN32_FIND_DATAA, dwFileAttributes) == 0);
static_assert(offsetof(WIN32_FIND_DATAA, ftCreationTime) == 4);
static_assert(offsetof(WIN32_FIND_DATAA, ftLastAccessTime) == 12);
static_assert(offsetof(WIN32_FIND_DATAA, ftLastWriteTime) == 20);
static_assert(offsetof(WIN32_FIND_DATAA, nFileSizeHigh) == 28);
static_assert(offsetof(WIN32_FIND_DATAA, nFileSizeLow) == 32);
static_assert(offsetof(WIN32_FIND_DATAA, dwReserved0) == 36);
static_assert(offsetof(WIN32_FIND_DATAA, dwReserved1) == 40);
static_assert(offsetof(WIN32_FIND_DATAA, cFileName) == 44);
static_assert(offsetof(WIN32_FIND_DATAA, cAlternateFileName) == 304);

static_assert(sizeof(BY_HANDLE_FILE_INFORMATION) == 52);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, dwFileAttributes) == 0);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, ftCreationTime) == 4);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, ftLastAccessTime) == 12);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, ftLastWriteTime) == 20);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, dwVolumeSerialNumber) == 28);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, nFileSizeHigh) == 32);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, nFileSizeLow) == 36);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, nNumberOfLinks) == 40);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, nFileIndexHigh) == 44);
static_assert(offsetof(BY_HANDLE_FILE_INFORMATION, nFileIndexLow) == 48);

static_assert(sizeof(MEMORYSTATUS) == 56);
static_assert(offsetof(MEMORYSTATUS, dwLength) == 0);
static_assert(offsetof(MEMORYSTATUS, dwMemoryLoad) == 4);
static_assert(offsetof(MEMORYSTATUS, dwTotalPhys) == 8);
static_assert(offsetof(MEMORYSTATUS, dwAvailPhys) == 16);
static_assert(offsetof(MEMORYSTATUS, dwTotalPageFile) == 24);
static_assert(offsetof(MEMORYSTATUS, dwAvailPageFile) == 32);
static_assert(offsetof(MEMORYSTATUS, dwTotalVirtual) == 40);
static_assert(offsetof(MEMORYSTATUS, dwAvailVirtual) == 48);

static_assert(sizeof(WNDCLASSEXA) == 80);
static_assert(offsetof(WNDCLASSEXA, cbSize) == 0);
static_assert(offsetof(WNDCLASSEXA, style) == 4);
static_assert(offsetof(WNDCLASSEXA, lpfnWndProc) == 8);
static_assert(offsetof(WNDCLASSEXA, cbClsExtra) == 16);
static_assert(offsetof(WNDCLASSEXA, cbWndExtra) == 20);
static_assert(offsetof(WNDCLASSEXA, hInstance) == 24);
static_assert(offsetof(WNDCLASSEXA, hIcon) == 32);
static_assert(offsetof(WNDCLASSEXA, hCursor) == 40);
static_assert(offsetof(WNDCLASSEXA, hbrBackground) == 48);
static_assert(offsetof(WNDCLASSEXA, lpszMenuName) == 56);
static_assert(offsetof(WNDCLASSEXA, lpszClassName) == 64);
static_assert(offsetof(WNDCLASSEXA, hIconSm) == 72);

static_assert(sizeof(MSG) == 48);
static_assert(offsetof(MSG, hwnd) == 0);
static_assert(offsetof(MSG, message) == 8);
static_assert(offsetof(MSG, wParam) == 16);
static_assert(offsetof(MSG, lParam) == 24);
static_assert(offsetof(MSG, time) == 32);
static_assert(offsetof(MSG, pt) == 36);

static_assert(sizeof(PAINTSTRUCT) == 72);
static_assert(offsetof(PAINTSTRUCT, hdc) == 0);
static_assert(offsetof(PAINTSTRUCT, fErase) == 8);
static_assert(offsetof(PAINTSTRUCT, rcPaint) == 12);
static_assert(offsetof(PAINTSTRUCT, fRestore) == 28);
static_assert(offsetof(PAINTSTRUCT, fIncUpdate) == 32);
static_assert(offsetof(PAINTSTRUCT, rgbReserved) == 36);

static_assert(sizeof(OPENFILENAMEA) == 152);
static_assert(offsetof(OPENFILENAMEA, lStructSize) == 0);
static_assert(offsetof(OPENFILENAMEA, hwndOwner) == 8);
static_assert(offsetof(OPENFILENAMEA, hInstance) == 16);
static_assert(offsetof(OPENFILENAMEA, lpstrFilter) == 24);
static_assert(offsetof(OPENFILENAMEA, lpstrCustomFilter) == 32);
static_assert(offsetof(OPENFILENAMEA, nMaxCustFilter) == 40);
static_assert(offsetof(OPENFILENAMEA, nFilterIndex) == 44);
static_assert(offsetof(OPENFILENAMEA, lpstrFile) == 48);
static_assert(offsetof(OPENFILENAMEA, nMaxFile) == 56);
static_assert(offsetof(OPENFILENAMEA, lpstrFileTitle) == 64);
static_assert(offsetof(OPENFILENAMEA, nMaxFileTitle) == 72);
static_assert(offsetof(OPENFILENAMEA, lpstrInitialDir) == 80);
static_assert(offsetof(OPENFILENAMEA, lpstrTitle) == 88);
static_assert(offsetof(OPENFILENAMEA, Flags) == 96);
static_assert(offsetof(OPENFILENAMEA, nFileOffset) == 100);
static_assert(offsetof(OPENFILENAMEA, nFileExtension) == 102);
static_assert(offsetof(OPENFILENAMEA, lpstrDefExt) == 104);
static_assert(offsetof(OPENFILENAMEA, lCustData) == 112);
static_assert(offsetof(OPENFILENAMEA, lpfnHook) == 120);
static_assert(offsetof(OPENFILENAMEA, lpTemplateName) == 128);
static_assert(offsetof(OPENFILENAMEA, pvReserved) == 136);
static_assert(offsetof(OPENFILENAMEA, dwReserved) == 144);
static_assert(offsetof(OPENFILENAMEA, FlagsEx) == 148);

// --- pointer constants, which static_assert cannot compare

TEST(Layout, PointerConstantsHaveThePublishedBits)
{
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(INVALID_HANDLE_VALUE), ~ULONG_PTR{0});
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(IDC_ARROW), 32512u);
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(MAKEINTRESOURCEA(0x12345)), 0x2345u);
    EXPECT_EQ(static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(HKEY_CURRENT_USER)), 0x80000001u);
    // The public definition sign-extends the number, so the upper half is all ones.
    EXPECT_LT(reinterpret_cast<INT_PTR>(HKEY_CURRENT_USER), 0);
}
