#include "platform/headless/d3dx/effect/FxParameter.h"

#include <algorithm>

namespace headless::fx {

namespace {

uint64_t gNewestStamp = 0;

bool ReadsObject(const FxObject& object, const FxParameter& parameter)
{
    if (object.index.Reads(parameter))
        return true;
    return object.parameter && object.parameter->storage == parameter.storage;
}

} // namespace

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

/// An assignment that uses a sampler also reads what the sampler's states read.
bool FxAssignment::Reads(const FxParameter& parameter) const
{
    if (value.Reads(parameter) || ReadsObject(object, parameter))
        return true;
    if (!object.parameter || !object.parameter->IsSampler())
        return false;
    const auto anyReads = [&](const FxParameter& sampler) {
        return std::any_of(sampler.samplerStates.begin(), sampler.samplerStates.end(),
                           [&](const FxAssignment& inner) {
                               return inner.value.Reads(parameter) ||
                                      ReadsObject(inner.object, parameter);
                           });
    };
    return anyReads(*object.parameter) ||
           std::any_of(object.parameter->parts.begin(), object.parameter->parts.end(),
                       [&](const auto& part) { return anyReads(*part); });
}

uint64_t FxAssignment::Newest() const
{
    uint64_t newest = std::max(value.Newest(), object.index.Newest());
    if (!object.parameter)
        return newest;
    newest = std::max(newest, object.parameter->storage->changed);
    const auto add = [&](const FxParameter& sampler) {
        for (const FxAssignment& inner : sampler.samplerStates) {
            newest = std::max({newest, inner.value.Newest(), inner.object.index.Newest()});
            if (inner.object.parameter)
                newest = std::max(newest, inner.object.parameter->storage->changed);
        }
    };
    add(*object.parameter);
    if (object.parameter->IsSampler())
        for (const auto& part : object.parameter->parts)
            add(*part);
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

} // namespace headless::fx
