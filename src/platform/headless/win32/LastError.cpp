#include "platform/headless/win32/LastError.h"

#include <cerrno>

namespace headless {

static DWORD gLastErrorCode = ERROR_SUCCESS;

} // namespace headless

using namespace headless;

DWORD WINAPI GetLastError()
{
    return gLastErrorCode;
}

void WINAPI SetLastError(DWORD code)
{
    gLastErrorCode = code;
}

namespace headless {

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

} // namespace headless
