#include "tests/platform/pictures/ShaderWords.h"

#include <bit>

void ShaderWords::Begin(DWORD opcode)
{
    start = words.size();
    words.push_back(opcode);
}

ShaderWords& ShaderWords::End(std::initializer_list<Parameter> sources)
{
    for (const Parameter& source : sources)
        Put(source);
    Close();
    return *this;
}

void ShaderWords::Close()
{
    if (Major() >= 2)
        words[start] |= static_cast<DWORD>(words.size() - start - 1) << 24;
}

ShaderWords& ShaderWords::Indexed(DWORD opcode, Parameter result, Parameter source, Parameter index)
{
    Begin(opcode);
    words.push_back(result.isShaped ? result.word : result.word | 0xF0000);
    Put({source.word | 1u << 13, source.isShaped});
    if (Major() >= 2) // the oldest version knows one index only, a0.x
        Put(index);
    Close();
    return *this;
}

ShaderWords& ShaderWords::Declare(Parameter what, DWORD usage, DWORD usageIndex)
{
    Begin(kDcl);
    words.push_back(0x80000000 | usage | usageIndex << 16);
    words.push_back(what.isShaped ? what.word : what.word | 0xF0000);
    Close();
    return *this;
}

ShaderWords& ShaderWords::DeclareSampler(DWORD number, DWORD kind)
{
    Begin(kDcl);
    words.push_back(0x80000000 | kind << 27);
    words.push_back(S(number).word | 0xF0000);
    Close();
    return *this;
}

ShaderWords& ShaderWords::Define(DWORD number, float x, float y, float z, float w)
{
    Begin(kDef);
    words.push_back(C(number).word | 0xF0000);
    for (const float value : {x, y, z, w})
        words.push_back(std::bit_cast<DWORD>(value));
    Close();
    return *this;
}

ShaderWords& ShaderWords::DefineInt(DWORD number, int x, int y, int z)
{
    Begin(kDefI);
    words.push_back(I(number).word | 0xF0000);
    for (const int value : {x, y, z, 0})
        words.push_back(static_cast<DWORD>(value));
    Close();
    return *this;
}

ShaderWords& ShaderWords::DefineBool(DWORD number, bool value)
{
    Begin(kDefB);
    words.push_back(B(number).word | 0xF0000);
    words.push_back(value ? 1 : 0);
    Close();
    return *this;
}

std::vector<DWORD> ShaderWords::Stream() const
{
    std::vector<DWORD> stream = words;
    stream.push_back(0xFFFF);
    return stream;
}
