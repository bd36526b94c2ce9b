#include "platform/headless/win32/LastError.h"

#include <cerrno>

static DWORD gLastErrorCode = ERROR_SUCCESS;

DWORD WINAPI GetLastError()
{
    return gLastErrorCode;
}

void WINAPI SetLastError(DWORD code)
{
    gLastErrorCode = code;
}

BOOL FailWith(DWORD code)
{
    SetLastError(code);
    return FALSE;
}

BOOL FailWithErrno()
{
    switch (errno) {
    case ENOENT:
        return FailWith(ERROR_FILE_NOT_FOUND);
    case ENOTDIR:
        return FailWith(ERROR_PATH_NOT_FOUND);
    default:
        return FailWith(ERROR_ACCESS_DENIED);
    }
}
