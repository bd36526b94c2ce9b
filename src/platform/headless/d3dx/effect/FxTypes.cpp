#include "platform/headless/d3dx/effect/FxTypes.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

namespace {

struct NamedType {
    std::string_view name;
    D3DXPARAMETER_TYPE type;
};

/// Case matters. `half` and `double` are stored as floats, as the public interface has nothing
/// else.
constexpr NamedType kNumbers[] = {
    {"bool", D3DXPT_BOOL},  {"int", D3DXPT_INT},      {"uint", D3DXPT_INT},
    {"dword", D3DXPT_INT},  {"DWORD", D3DXPT_INT},    {"float", D3DXPT_FLOAT},
    {"half", D3DXPT_FLOAT}, {"double", D3DXPT_FLOAT},
};

/// Case is ignored.
constexpr NamedType kObjects[] = {
    {"void", D3DXPT_VOID},
    {"string", D3DXPT_STRING},
    {"texture", D3DXPT_TEXTURE},
    {"texture1D", D3DXPT_TEXTURE1D},
    {"texture2D", D3DXPT_TEXTURE2D},
    {"texture3D", D3DXPT_TEXTURE3D},
    {"textureCUBE", D3DXPT_TEXTURECUBE},
    {"sampler", D3DXPT_SAMPLER},
    {"sampler1D", D3DXPT_SAMPLER1D},
    {"sampler2D", D3DXPT_SAMPLER2D},
    {"sampler3D", D3DXPT_SAMPLER3D},
    {"samplerCUBE", D3DXPT_SAMPLERCUBE},
    {"pixelshader", D3DXPT_PIXELSHADER},
    {"vertexshader", D3DXPT_VERTEXSHADER},
};

/// Types of the published language that this host lacks. Case is ignored.
constexpr std::string_view kUnmodelledTypes[] = {"stateblock", "vertexfragment", "pixelfragment"};
/// The same; here case matters.
constexpr std::string_view kUnmodelledNumbers[] = {"FLOAT", "VECTOR", "MATRIX"};

bool IsUnmodelledType(std::string_view name)
{
    return std::any_of(std::begin(kUnmodelledTypes), std::end(kUnmodelledTypes),
                       [name](std::string_view row) { return FxSameWord(row, name); }) ||
           std::find(std::begin(kUnmodelledNumbers), std::end(kUnmodelledNumbers), name) !=
               std::end(kUnmodelledNumbers);
}

/// 1 to 4, or 0 for any other text.
UINT Extent(std::string_view text)
{
    return text.size() == 1 && text[0] >= '1' && text[0] <= '4' ? static_cast<UINT>(text[0] - '0')
                                                                : 0;
}

bool FindNumeric(D3DXPARAMETER_TYPE type, std::string_view extents, FxType& typeOut)
{
    if (extents.empty()) {
        typeOut = FxType::Of(type, 1, 1, false);
        return true;
    }
    const bool isMatrix = extents.size() == 3 && extents[1] == 'x';
    const UINT rows = isMatrix ? Extent(extents.substr(0, 1)) : 1;
    const UINT columns = Extent(isMatrix ? extents.substr(2) : extents);
    typeOut = FxType::Of(type, rows, columns, isMatrix);
    return rows > 0 && columns > 0;
}

} // namespace

FxType FxType::Of(D3DXPARAMETER_TYPE type, UINT rows, UINT columns, bool isMatrix)
{
    FxType result;
    result.kind = isMatrix ? D3DXPC_MATRIX_ROWS : columns > 1 ? D3DXPC_VECTOR : D3DXPC_SCALAR;
    result.type = type;
    result.rows = rows;
    result.columns = columns;
    return result;
}

UINT FxType::Elements() const
{
    UINT count = lengths.empty() ? 0 : 1;
    for (const UINT length : lengths)
        count *= length;
    return count;
}

FxType FxType::Object(D3DXPARAMETER_TYPE type)
{
    return {D3DXPC_OBJECT, type, 0, 0, nullptr, true, {}};
}

FxType FxType::Unmodelled()
{
    FxType result;
    result.isModelled = false;
    return result;
}

bool FxStruct::Add(FxMember member)
{
    const size_t count = std::max(member.elements, 1u);
    size_t ownNodes = member.elements; // each element is a node; its parts are counted below
    size_t ownCells = count * member.type.rows * member.type.columns;
    int wanted = depth;
    if (const FxStruct* inner = member.type.structure) {
        wanted = std::max(depth, inner->depth + 1);
        ownNodes += inner->nodes * count;
        ownCells = inner->cells * count;
    }
    if (wanted > kFxMaxStructDepth || nodes + ownNodes + 1 > kFxMaxNodes ||
        cells + ownCells > kFxMaxCells)
        return false;
    depth = wanted;
    nodes += ownNodes + 1;
    cells += ownCells;
    members.push_back(std::move(member));
    return true;
}

bool FxSizes::Add(const FxType& type, UINT elements)
{
    const size_t count = std::max(elements, 1u);
    const FxStruct* structure = type.structure;
    nodes += 1 + elements + (structure ? structure->nodes : 0) * count;
    cells += count * (structure ? structure->cells : size_t{type.rows} * type.columns);
    return nodes <= kFxMaxNodes && cells <= kFxMaxCells;
}

bool FxSizes::AddText(size_t bytes)
{
    textBytes += bytes;
    return textBytes <= kFxMaxTextBytes;
}

bool FxFindBuiltInType(std::string_view name, FxType& typeOut)
{
    for (const NamedType& object : kObjects) {
        if (FxSameWord(object.name, name)) {
            typeOut = FxType::Object(object.type);
            return true;
        }
    }
    for (const NamedType& number : kNumbers)
        if (name.starts_with(number.name) &&
            FindNumeric(number.type, name.substr(number.name.size()), typeOut))
            return true;
    const bool isMatrix = name == "matrix";
    if (isMatrix || name == "vector") {
        typeOut = FxType::Of(D3DXPT_FLOAT, isMatrix ? 4 : 1, 4, isMatrix);
        return true;
    }
    return false;
}

bool FxNames::FindType(std::string_view name, FxType& typeOut) const
{
    const auto known = types.find(name);
    if (known == types.end())
        return FxFindBuiltInType(name, typeOut);
    typeOut = known->second;
    return typeOut.isModelled && typeOut.lengths.empty();
}

bool FxNames::FindDeclaredType(std::string_view name, FxType& typeOut) const
{
    const auto known = types.find(name);
    if (known != types.end()) {
        typeOut = known->second;
        return true;
    }
    if (FxFindBuiltInType(name, typeOut))
        return true;
    typeOut = FxType::Unmodelled();
    return IsUnmodelledType(name);
}

bool FxNames::IsUnmodelled(std::string_view name) const
{
    FxType type;
    if (parameters.contains(name))
        return false;
    return unmodelled.contains(name) || (FindDeclaredType(name, type) && !type.isModelled);
}

} // namespace headless::fx
