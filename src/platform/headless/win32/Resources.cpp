#include "platform/headless/win32/LastError.h"
#include "platform/headless/win32/StringTable.h"

#include <algorithm>
#include <cstring>

using namespace headless;

int WINAPI LoadStringA(HINSTANCE, UINT id, LPSTR buffer, int size)
{
    if (size <= 0)
        return 0;
    for (unsigned row = 0; row < kStringTableCount; ++row) {
        if (kStringTable[row].id != id)
            continue;
        const char* text = kStringTable[row].text;
        const size_t length = std::min(std::strlen(text), static_cast<size_t>(size) - 1);
        std::memcpy(buffer, text, length);
        buffer[length] = '\0';
        return static_cast<int>(length);
    }
    buffer[0] = '\0';
    return 0;
}

// Icons and cursors are never drawn here; they only must differ from the result of a failure.

HICON WINAPI LoadIconA(HINSTANCE, LPCSTR name)
{
    return reinterpret_cast<HICON>(const_cast<char*>(name));
}

HCURSOR WINAPI LoadCursorA(HINSTANCE, LPCSTR name)
{
    return reinterpret_cast<HCURSOR>(const_cast<char*>(name));
}
