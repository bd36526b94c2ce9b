#include <windows.h>

#include <commdlg.h>
#include <cstdio>

int WINAPI MessageBoxA(HWND, LPCSTR text, LPCSTR title, UINT)
{
    // What went to standard output before the box is seen before it.
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n%s\n", title, text);
    return IDOK;
}

BOOL WINAPI GetOpenFileNameA(OPENFILENAMEA*)
{
    return FALSE;
}

BOOL WINAPI GetSaveFileNameA(OPENFILENAMEA*)
{
    return FALSE;
}
