#include "platform/headless/d3dx/language/HlTypes.h"

#include <algorithm>

namespace headless::hl {

namespace {

constexpr struct {
    std::string_view word;
    HlBase base;
} kBases[] = {{"bool", HlBase::Bool},   {"int", HlBase::Int},     {"uint", HlBase::Int},
              {"dword", HlBase::Int},   {"float", HlBase::Float}, {"half", HlBase::Float},
              {"double", HlBase::Float}};

constexpr struct {
    std::string_view word;
    shader::SamplerKind kind;
} kSamplers[] = {{"sampler", shader::SamplerKind::Unknown},
                 {"sampler1D", shader::SamplerKind::OneD},
                 {"sampler2D", shader::SamplerKind::TwoD},
                 {"sampler3D", shader::SamplerKind::Volume},
                 {"samplerCUBE", shader::SamplerKind::Cube}};

/// Types whose values shaders cannot use.
constexpr std::string_view kObjects[] = {
    "texture",      "texture1D",  "texture2D",     "texture3D",     "textureCUBE",
    "Texture",      "string",     "pixelshader",   "PixelShader",   "vertexshader",
    "VertexShader", "stateblock", "pixelfragment", "vertexfragment"};

bool IsExtent(char c)
{
    return c >= '1' && c <= '4';
}

} // namespace

const HlMember* HlStruct::Find(std::string_view member) const
{
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const HlMember& one) { return one.name == member; });
    return found == members.end() ? nullptr : &*found;
}

HlTypes::HlTypes()
{
    nothing.kind = HlKind::Void;
    nothing.cells = 0;
    object.kind = HlKind::Object;
    for (unsigned base = 0; base < 3; ++base)
        for (unsigned form = 0; form < 3; ++form)
            for (unsigned rows = 1; rows <= 4; ++rows)
                for (unsigned columns = 1; columns <= 4; ++columns)
                    for (unsigned order = 0; order < 2; ++order) {
                        HlType& type = numbers[base][form][rows - 1][columns - 1][order];
                        type.kind = HlKind::Number;
                        type.base = static_cast<HlBase>(base);
                        type.form = static_cast<HlForm>(form);
                        type.rows = static_cast<uint8_t>(rows);
                        type.columns = static_cast<uint8_t>(columns);
                        type.isColumnMajor = order == 1;
                        type.cells = rows * columns;
                    }
    for (unsigned i = 0; i < 5; ++i) {
        samplers[i].kind = HlKind::Sampler;
        samplers[i].sampler = static_cast<shader::SamplerKind>(i);
    }
}

const HlType* HlTypes::Number(HlBase base, HlForm form, unsigned rows, unsigned columns,
                              bool isColumnMajor) const
{
    return &numbers[static_cast<unsigned>(base)][static_cast<unsigned>(form)][rows - 1][columns - 1]
                   [isColumnMajor || form != HlForm::Matrix ? 1 : 0];
}

const HlType* HlTypes::Sampler(shader::SamplerKind kind) const
{
    return &samplers[static_cast<unsigned>(kind)];
}

const HlType* HlTypes::WithBase(const HlType& type, HlBase base) const
{
    return Number(base, type.form, type.rows, type.columns, type.isColumnMajor);
}

const HlType* HlTypes::Array(const HlType& element, uint32_t count)
{
    if (uint64_t{element.cells} * count > kHlMaxCells || element.depth >= kHlMaxTypeDepth)
        return nullptr;
    HlType& type = made.emplace_back();
    type.kind = HlKind::Array;
    type.element = &element;
    type.count = count;
    type.cells = element.cells * count;
    type.depth = element.depth + 1;
    return &type;
}

HlStruct& HlTypes::NewStruct()
{
    return structs.emplace_back();
}

const HlType* HlTypes::Struct(const HlStruct& structure)
{
    HlType& type = made.emplace_back();
    type.kind = HlKind::Struct;
    type.structure = &structure;
    type.cells = 0;
    uint64_t cells = 0;
    for (const HlMember& member : structure.members) {
        cells += member.type->cells;
        type.depth = std::max(type.depth, member.type->depth + 1);
    }
    if (cells > kHlMaxCells || type.depth > kHlMaxTypeDepth)
        return nullptr;
    type.cells = static_cast<uint32_t>(cells);
    return &type;
}

const HlType* HlTypes::Find(std::string_view name) const
{
    for (const auto& row : kBases) {
        if (!name.starts_with(row.word))
            continue;
        const std::string_view rest = name.substr(row.word.size());
        if (rest.empty())
            return Scalar(row.base);
        if (rest.size() == 1 && IsExtent(rest[0]))
            return Vector(row.base, static_cast<unsigned>(rest[0] - '0'));
        if (rest.size() == 3 && IsExtent(rest[0]) && rest[1] == 'x' && IsExtent(rest[2]))
            return Matrix(row.base, static_cast<unsigned>(rest[0] - '0'),
                          static_cast<unsigned>(rest[2] - '0'));
    }
    for (const auto& row : kSamplers)
        if (name == row.word)
            return Sampler(row.kind);
    if (name == "samplerCube" || name == "samplercube")
        return Sampler(shader::SamplerKind::Cube);
    if (name == "vector" || name == "VECTOR")
        return Vector(HlBase::Float, 4);
    if (name == "matrix" || name == "MATRIX")
        return Matrix(HlBase::Float, 4, 4);
    if (name == "FLOAT")
        return Scalar(HlBase::Float);
    if (name == "void")
        return Void();
    return std::find(std::begin(kObjects), std::end(kObjects), name) != std::end(kObjects)
               ? Object()
               : nullptr;
}

std::string HlTypes::Name(const HlType& type)
{
    static constexpr const char* kNames[] = {"bool", "int", "float"};
    switch (type.kind) {
    case HlKind::Void:
        return "void";
    case HlKind::Sampler:
        for (const auto& row : kSamplers)
            if (row.kind == type.sampler)
                return std::string(row.word);
        return "sampler";
    case HlKind::Struct:
        return "struct " + std::string(type.structure->name);
    case HlKind::Array:
        return Name(*type.element) + '[' + std::to_string(type.count) + ']';
    case HlKind::Number:
        break;
    default:
        return "an object";
    }
    std::string name = kNames[static_cast<unsigned>(type.base)];
    if (type.form == HlForm::Vector)
        return name + std::to_string(type.columns);
    if (type.form == HlForm::Matrix)
        name += std::to_string(type.rows) + 'x' + std::to_string(type.columns);
    return name;
}

} // namespace headless::hl
