#include "platform/headless/d3dx/effect/FxParameter.h"

#include <algorithm>
#include <charconv>

#include "platform/headless/d3dx/effect/FxShader.h"
#include "platform/headless/d3dx/effect/FxTypes.h"

namespace headless::fx {

namespace {

uint64_t gNewestStamp = 0;

bool ReadsObject(const FxObject& object, const FxParameter& parameter)
{
    if (object.index.Reads(parameter))
        return true;
    return object.parameter && object.parameter->storage == parameter.storage;
}

/// Allocates its place in the storage; parts use that of the whole. Recurses as deep as structs
/// nest, which is limited.
void Build(FxParameter& parameter, const FxType& type, UINT elements)
{
    parameter.kind = type.kind;
    parameter.type = type.type;
    parameter.rows = type.rows;
    parameter.columns = type.columns;
    parameter.elements = elements;
    if (elements > 0 && type.lengths.size() > 1)
        parameter.dimensions = type.lengths;
    FxStorage& storage = *parameter.storage;
    parameter.first = type.IsNumeric()             ? storage.cells.size()
                      : type.type == D3DXPT_STRING ? storage.strings.size()
                      : type.kind == D3DXPC_STRUCT ? storage.cells.size()
                                                   : storage.textures.size();
    const auto add = [&](const FxType& partType, UINT partElements) -> FxParameter& {
        FxParameter& part = *parameter.parts.emplace_back(std::make_unique<FxParameter>());
        part.storage = parameter.storage;
        Build(part, partType, partElements);
        return part;
    };
    for (UINT i = 0; i < elements; ++i)
        add(type, 0);
    if (elements > 0)
        return;
    if (type.IsNumeric())
        storage.cells.resize(storage.cells.size() + type.Shape().Count());
    else if (type.type == D3DXPT_STRING)
        storage.strings.emplace_back();
    else if (parameter.IsTexture())
        storage.textures.emplace_back();
    if (!type.structure)
        return;
    for (const FxMember& member : type.structure->members) {
        FxParameter& part = add(member.type, member.elements);
        part.name = member.name;
        part.semantic = member.semantic;
        part.hasSemantic = member.hasSemantic;
        for (const auto& element : part.parts)
            if (part.IsArray())
                element->name = member.name;
    }
}

} // namespace

std::unique_ptr<FxParameter> FxMakeParameter(const FxType& type, UINT elements)
{
    auto parameter = std::make_unique<FxParameter>();
    parameter->storage = std::make_shared<FxStorage>();
    Build(*parameter, type, elements);
    return parameter;
}

uint64_t FxStamp()
{
    return ++gNewestStamp;
}

void FxStorage::Touch()
{
    changed = FxStamp();
}

size_t FxParameter::ValueCount() const
{
    const size_t count = std::max(elements, 1u);
    if (kind == D3DXPC_STRUCT)
        return 0;
    return IsNumeric() ? count * CellCount() : count;
}

UINT FxParameter::ByteCount() const
{
    if (kind == D3DXPC_STRUCT) {
        UINT sum = 0;
        for (const auto& part : parts)
            sum += part->ByteCount();
        return sum;
    }
    const size_t size = IsNumeric() ? sizeof(FxCell) : sizeof(void*);
    return static_cast<UINT>(ValueCount() * size);
}

const FxParameter* FxObject::Resolve(std::vector<FxNumber>& scratch) const
{
    if (!parameter || !parameter->IsArray())
        return parameter;
    const int32_t wanted = index.IsEmpty() ? 0 : index.Evaluate(scratch).Int(0);
    const auto last = static_cast<int32_t>(parameter->elements) - 1;
    return parameter->parts[static_cast<size_t>(std::clamp(wanted, 0, last))].get();
}

bool FxFits(const FxState& state, const FxParameter& parameter)
{
    switch (state.kind) {
    case FxStateKind::Texture:
        return parameter.IsTexture();
    case FxStateKind::SamplerObject:
        return parameter.IsSampler();
    case FxStateKind::VertexShader:
        return parameter.type == D3DXPT_VERTEXSHADER;
    default:
        return parameter.type == D3DXPT_PIXELSHADER;
    }
}

bool FxSamplerReads(const FxParameter& sampler, const FxParameter& parameter)
{
    return std::any_of(sampler.samplerStates.begin(), sampler.samplerStates.end(),
                       [&](const FxAssignment& inner) {
                           return inner.value.Reads(parameter) ||
                                  ReadsObject(inner.object, parameter);
                       }) ||
           std::any_of(sampler.parts.begin(), sampler.parts.end(),
                       [&](const auto& part) { return FxSamplerReads(*part, parameter); });
}

uint64_t FxSamplerNewest(const FxParameter& sampler)
{
    uint64_t newest = sampler.storage->changed;
    for (const FxAssignment& inner : sampler.samplerStates) {
        newest = std::max({newest, inner.value.Newest(), inner.object.index.Newest()});
        if (inner.object.parameter)
            newest = std::max(newest, inner.object.parameter->storage->changed);
    }
    for (const auto& part : sampler.parts)
        newest = std::max(newest, FxSamplerNewest(*part));
    return newest;
}

/// An assignment that uses a sampler also reads what the sampler's states read, one that sets a shader what
/// the shader takes.
bool FxAssignment::Reads(const FxParameter& parameter) const
{
    if (value.Reads(parameter) || ReadsObject(object, parameter))
        return true;
    const auto shaderReads = [&](const FxShader* program) {
        return program && program->Reads(parameter);
    };
    const FxParameter* const read = object.parameter;
    return shaderReads(shader.get()) ||
           (read && read->IsSampler() && FxSamplerReads(*read, parameter)) ||
           (read && shaderReads(read->shader.get())) ||
           (read && std::any_of(read->parts.begin(), read->parts.end(),
                                [&](const auto& part) { return shaderReads(part->shader.get()); }));
}

uint64_t FxAssignment::Newest() const
{
    uint64_t newest = std::max(value.Newest(), object.index.Newest());
    const auto addShader = [&](const FxShader* program) {
        newest = std::max(newest, program ? program->Newest() : 0);
    };
    addShader(shader.get());
    const FxParameter* const read = object.parameter;
    if (!read)
        return newest;
    newest = std::max(newest, FxSamplerNewest(*read));
    addShader(read->shader.get());
    for (const auto& part : read->parts)
        addShader(part->shader.get());
    return newest;
}

FxParameter* FxFindByName(const std::vector<std::unique_ptr<FxParameter>>& list,
                          std::string_view name)
{
    for (const auto& parameter : list)
        if (parameter->name == name)
            return parameter.get();
    return nullptr;
}

FxParameter* FxFindPath(const std::vector<std::unique_ptr<FxParameter>>& list, FxParameter* parent,
                        std::string_view path)
{
    FxParameter* found = parent;
    if (!parent || (!path.starts_with('.') && !path.starts_with('[') && !path.starts_with('@'))) {
        const size_t end = std::min(path.find_first_of(".[@"), path.size());
        found = FxFindByName(parent ? parent->parts : list, path.substr(0, end));
        path.remove_prefix(end);
    }
    while (found && !path.empty()) {
        const char sign = path.front();
        path.remove_prefix(1);
        const size_t end = std::min(path.find_first_of(".[@"), path.size());
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(end);
        if (sign == '[') {
            UINT index = 0;
            const char* const last = part.data() + part.size();
            const auto [stop, error] = std::from_chars(part.data(), last, index);
            const bool fits = error == std::errc() && stop + 1 == last && *stop == ']' &&
                              found->IsArray() && index < found->elements;
            found = fits ? found->parts[index].get() : nullptr;
        } else if (sign == '@') {
            found = FxFindByName(found->annotations, part);
        } else {
            found = found->IsArray() ? nullptr : FxFindByName(found->parts, part);
        }
    }
    return found;
}

} // namespace headless::fx
