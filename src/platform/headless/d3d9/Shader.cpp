#include "platform/headless/d3d9/Shader.h"

#include <cstring>

namespace headless {

bool ShaderContent::Read(const DWORD* code, bool isPixel, std::string& reasonOut)
{
    const size_t count = shader::StreamWords(reinterpret_cast<const shader::Word*>(code));
    words.assign(code, code + (count > 0 ? count : 1));
    shader::Bytecode bytecode;
    shader::Fault fault;
    const bool isRead =
        shader::ReadBytecode({reinterpret_cast<const shader::Word*>(words.data()), words.size()},
                             bytecode, fault) &&
        shader::CheckBytecode(bytecode, fault);
    if (isRead && bytecode.version.isPixel != isPixel)
        fault.reason = isPixel ? "it is a vertex shader" : "it is a pixel shader";
    reasonOut = fault.reason;
    if (!reasonOut.empty())
        return false;
    shader::BuildProgram(bytecode, program);
    return true;
}

/// Without a buffer only the size is given.
HRESULT ShaderContent::GetWords(void* codeOut, UINT* sizeInOut) const
{
    if (!sizeInOut)
        return D3DERR_INVALIDCALL;
    const UINT bytes = static_cast<UINT>(words.size() * sizeof(DWORD));
    if (codeOut && *sizeInOut < bytes)
        return D3DERR_INVALIDCALL;
    if (codeOut)
        std::memcpy(codeOut, words.data(), bytes);
    *sizeInOut = bytes;
    return D3D_OK;
}

} // namespace headless
