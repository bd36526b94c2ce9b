// Parameters, their types and values.

#include "platform/headless/d3dx/effect/FxCompiledReader.h"

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxShader.h"

namespace headless::fx {

namespace {

constexpr uint32_t kSharedFlag = 1;
/// A sampler has fewer states than this; each may be given again.
constexpr uint32_t kMaxSamplerStates = 64;

bool IsObjectType(uint32_t type)
{
    return type >= D3DXPT_STRING && type <= D3DXPT_VERTEXSHADER;
}

bool IsNumberType(uint32_t type)
{
    return type == D3DXPT_BOOL || type == D3DXPT_INT || type == D3DXPT_FLOAT;
}

} // namespace

FxCompiledReader::FxCompiledReader(std::string_view file, FxPlace errorPlace, FxDiagnostics& log,
                                   EffectPool* effectPool, FxModel& target)
    : bytes(file),
      place(errorPlace),
      diagnostics(log),
      pool(effectPool),
      model(target)
{}

bool FxCompiledReader::Damaged(const std::string& what)
{
    return diagnostics.Fail(place, FxError::BadText,
                            "the compiled effect is damaged near byte " +
                                std::to_string(body.Position()) + ": " + what);
}

bool FxCompiledReader::DamagedEnd()
{
    return Damaged("it ends too early");
}

bool FxCompiledReader::DamagedOffset()
{
    return Damaged("a part of it is not where it should be");
}

bool FxCompiledReader::DamagedType()
{
    return Damaged("a type is not valid");
}

bool FxCompiledReader::DamagedProgram()
{
    return Damaged("a program is not valid");
}

bool FxCompiledReader::Count(size_t nodes)
{
    sizes.nodes += nodes;
    return sizes.nodes <= kFxMaxNodes ||
           diagnostics.Fail(place, FxError::Limit, "the effect has too many parameters");
}

bool FxCompiledReader::Run()
{
    uint32_t parameters = 0, techniques = 0, strings = 0, resources = 0;
    if (!Header(parameters, techniques) || !Parameters(parameters) || !Techniques(techniques))
        return false;
    if (!body.NextOf(strings, resources))
        return DamagedEnd();
    return Strings(strings) && Resources(resources) && Finish();
}

bool FxCompiledReader::Header(uint32_t& parametersOut, uint32_t& techniquesOut)
{
    FxCompiledWords head(bytes);
    uint32_t tag = 0, poolBytes = 0, unused = 0, objectCount = 0;
    if (!head.Next(tag) || tag != kFxCompiledTag)
        return diagnostics.Fail(place, FxError::BadText,
                                "this is neither a text nor a compiled effect (fx_2_0)");
    if (!head.Next(poolBytes) || !head.Take(poolBytes, data))
        return DamagedEnd();
    body = head;
    if (!body.NextOf(parametersOut, techniquesOut, unused, objectCount))
        return DamagedEnd();
    if (objectCount > bytes.size() / 4)
        return DamagedEnd();
    objects.resize(objectCount);
    return true;
}

bool FxCompiledReader::Parameters(uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t type = 0, value = 0, flags = 0, annotations = 0;
        if (!body.NextOf(type, value, flags, annotations))
            return DamagedEnd();
        std::unique_ptr<FxParameter> parameter = Make(type, value);
        if (!parameter)
            return false;
        parameter->flags = (flags & kSharedFlag) != 0 ? D3DX_PARAMETER_SHARED : 0;
        if (!Annotations(annotations, parameter->annotations) ||
            !AddParameter(std::move(parameter)))
            return false;
    }
    return true;
}

/// Of several with one name, the first is found by it.
bool FxCompiledReader::AddParameter(std::unique_ptr<FxParameter> parameter)
{
    const bool isShared = pool && (parameter->flags & D3DX_PARAMETER_SHARED) != 0;
    model.names.parameters.emplace(parameter->name, parameter.get());
    FxParameter& kept = *model.parameters.emplace_back(std::move(parameter));
    return !isShared || pool->Share(kept) ||
           diagnostics.Fail(place, FxError::SharedMismatch,
                            "another effect of the pool shares " + ('\'' + kept.name + '\'') +
                                " as another type");
}

bool FxCompiledReader::Annotations(uint32_t count, List& annotationsOut)
{
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t type = 0, value = 0;
        if (!body.NextOf(type, value))
            return DamagedEnd();
        std::unique_ptr<FxParameter> annotation = Make(type, value);
        if (!annotation)
            return false;
        annotation->flags = D3DX_PARAMETER_ANNOTATION;
        annotationsOut.push_back(std::move(annotation));
    }
    return true;
}

/// Null with an error if the type or the value is damaged.
std::unique_ptr<FxParameter> FxCompiledReader::Make(uint32_t type, uint32_t value)
{
    FxCompiledWords typeWords(data, type);
    FxCompiledWords valueWords(data, value);
    FxMember member;
    if (!Type(typeWords, 1, member))
        return nullptr;
    if (!sizes.Add(member.type, member.elements)) {
        diagnostics.Fail(place, FxError::Limit, "the effect has too many parameters");
        return nullptr;
    }
    std::unique_ptr<FxParameter> parameter = FxMakeParameter(member.type, member.elements);
    parameter->name = std::move(member.name);
    parameter->semantic = std::move(member.semantic);
    parameter->hasSemantic = member.hasSemantic;
    return Value(valueWords, *parameter) ? std::move(parameter) : nullptr;
}

// ---- Types

/// Structs nest no deeper than `kFxMaxStructDepth`.
bool FxCompiledReader::Type(FxCompiledWords& words, int depth, FxMember& memberOut)
{
    uint32_t type = 0, kind = 0, name = 0, semantic = 0;
    if (!words.NextOf(type, kind, name, semantic, memberOut.elements))
        return DamagedOffset();
    if (!Name(name, memberOut.name) || !Name(semantic, memberOut.semantic))
        return false;
    memberOut.hasSemantic = !memberOut.semantic.empty();
    if (memberOut.elements > kFxMaxElements)
        return DamagedType();
    FxType& made = memberOut.type;
    made.kind = static_cast<D3DXPARAMETER_CLASS>(kind);
    made.type = static_cast<D3DXPARAMETER_TYPE>(type);
    if (kind <= D3DXPC_MATRIX_COLUMNS && IsNumberType(type))
        return Extents(words, made);
    made.rows = made.columns = 0;
    if (kind == D3DXPC_STRUCT)
        return Members(words, depth, made);
    if (kind == D3DXPC_OBJECT && IsObjectType(type))
        return true;
    return DamagedType();
}

/// Vectors have their columns first.
bool FxCompiledReader::Extents(FxCompiledWords& words, FxType& typeOut)
{
    const bool isVector = typeOut.kind == D3DXPC_VECTOR;
    const bool isRead = isVector ? words.NextOf(typeOut.columns, typeOut.rows)
                                 : words.NextOf(typeOut.rows, typeOut.columns);
    if (!isRead)
        return DamagedOffset();
    const auto fits = [](UINT extent) { return extent >= 1 && extent <= 4; };
    return (fits(typeOut.rows) && fits(typeOut.columns)) || DamagedType();
}

bool FxCompiledReader::Members(FxCompiledWords& words, int depth, FxType& typeOut)
{
    uint32_t count = 0;
    if (!words.Next(count))
        return DamagedOffset();
    if (depth >= kFxMaxStructDepth)
        return diagnostics.Fail(place, FxError::Limit, "the struct becomes too large");
    typeOut.type = D3DXPT_VOID;
    FxStruct& structure = *model.names.structs.emplace_back(std::make_unique<FxStruct>());
    typeOut.structure = &structure;
    for (uint32_t i = 0; i < count; ++i) {
        FxMember member;
        if (!Count(1) || !Type(words, depth + 1, member))
            return false;
        if (!structure.Add(std::move(member)))
            return diagnostics.Fail(place, FxError::Limit, "the struct becomes too large");
    }
    return true;
}

bool FxCompiledReader::Name(uint32_t offset, std::string& nameOut)
{
    FxCompiledWords words(data, offset);
    uint32_t size = 0;
    std::string_view text;
    if (!words.Next(size) || !words.Take(size, text))
        return DamagedOffset();
    nameOut = text.substr(0, text.find('\0'));
    return sizes.AddText(nameOut.size()) ||
           diagnostics.Fail(place, FxError::Limit, "the effect has too many parameters");
}

// ---- Values

bool FxCompiledReader::Value(FxCompiledWords& words, FxParameter& parameter)
{
    if (!parameter.IsArray())
        return One(words, parameter);
    return std::all_of(parameter.parts.begin(), parameter.parts.end(),
                       [&](const auto& element) { return One(words, *element); });
}

bool FxCompiledReader::One(FxCompiledWords& words, FxParameter& parameter)
{
    if (parameter.IsNumeric())
        return Numbers(words, parameter);
    if (parameter.kind != D3DXPC_STRUCT)
        return parameter.IsSampler() ? SamplerStates(words, parameter) : Object(words, parameter);
    return std::all_of(parameter.parts.begin(), parameter.parts.end(),
                       [&](const auto& member) { return Value(words, *member); });
}

bool FxCompiledReader::Numbers(FxCompiledWords& words, FxParameter& parameter)
{
    FxCell* const cells = parameter.Cells();
    for (UINT i = 0; i < parameter.CellCount(); ++i)
        if (!words.Next(cells[i]))
            return DamagedOffset();
    return true;
}

/// Contents follow under the object's number; 0 is none.
bool FxCompiledReader::Object(FxCompiledWords& words, FxParameter& parameter)
{
    uint32_t number = 0;
    if (!words.Next(number))
        return DamagedOffset();
    if (number >= objects.size())
        return DamagedOffset();
    if (!isStateValue)
        objects[number] = &parameter;
    return true;
}

bool FxCompiledReader::SamplerStates(FxCompiledWords& words, FxParameter& sampler)
{
    uint32_t count = 0;
    if (!words.Next(count))
        return DamagedOffset();
    if (count > kMaxSamplerStates || (isStateValue && count > 0))
        return DamagedType();
    for (uint32_t i = 0; i < count; ++i)
        if (!State(words, nullptr, sampler.samplerStates))
            return false;
    return true;
}

} // namespace headless::fx
