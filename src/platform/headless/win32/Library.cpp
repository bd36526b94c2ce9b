#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/LastError.h"

namespace headless {

namespace {

/// The libraries that this host provides; a probe for any other one fails.
const char* const kBuiltInLibraries[] = {"d3d9.dll", "d3dx9_30.dll"};

} // namespace

} // namespace headless

using namespace headless;

HMODULE WINAPI GetModuleHandleA(LPCSTR)
{
    return nullptr;
}

HMODULE WINAPI LoadLibraryA(LPCSTR name)
{
    for (const char* const& library : kBuiltInLibraries) {
        if (SameNameIgnoringCase(library, name))
            return reinterpret_cast<HMODULE>(const_cast<char*>(library));
    }
    FailWith(ERROR_FILE_NOT_FOUND);
    return nullptr;
}

BOOL WINAPI FreeLibrary(HMODULE module)
{
    return module != nullptr ? TRUE : FailWith(ERROR_INVALID_HANDLE);
}
