#include "platform/ShaderListing.h"

#include <d3dx9.h>

#include "platform/ComPointer.h"

#include <cstring>
#include <vector>

namespace {

std::string TextOf(ID3DXBuffer* buffer, const char* otherwise)
{
    return buffer ? static_cast<const char*>(buffer->GetBufferPointer()) : otherwise;
}

/// Bytecode begins with a version whose upper half is 0xFFFE or 0xFFFF.
bool IsBytecode(std::string_view bytes)
{
    DWORD first = 0;
    if (bytes.size() < sizeof first)
        return false;
    std::memcpy(&first, bytes.data(), sizeof first);
    return first >> 16 >= 0xFFFE;
}

} // namespace

/// The system's library does the work, so the layout of the text is its own.
std::string ListShader(std::string_view bytes, std::string& listingOut)
{
    ComPointer<ID3DXBuffer> code, errors, text;
    std::vector<DWORD> words(bytes.size() / sizeof(DWORD) + 1, 0x0000FFFF);
    const DWORD* stream = words.data();
    if (IsBytecode(bytes)) {
        std::memcpy(words.data(), bytes.data(), bytes.size() / sizeof(DWORD) * sizeof(DWORD));
    } else {
        if (FAILED(D3DXAssembleShader(bytes.data(), static_cast<UINT>(bytes.size()), nullptr,
                                      nullptr, 0, code.Out(), errors.Out())))
            return TextOf(errors.Get(), "the text is refused");
        stream = static_cast<const DWORD*>(code->GetBufferPointer());
    }
    if (FAILED(D3DXDisassembleShader(stream, FALSE, nullptr, text.Out())))
        return "the bytecode is refused";
    listingOut = TextOf(text.Get(), "");
    return "";
}
