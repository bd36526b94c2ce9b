#include "platform/headless/d3dx/language/HlConstants.h"

#include <algorithm>

namespace headless::hl {

uint32_t HlConstants::RegistersOf(const HlType& type)
{
    switch (type.kind) {
    case HlKind::Number:
        return type.form != HlForm::Matrix ? 1 : type.isColumnMajor ? type.columns : type.rows;
    case HlKind::Array:
        return RegistersOf(*type.element) * type.count;
    case HlKind::Struct: {
        uint32_t sum = 0;
        for (const HlMember& member : type.structure->members)
            sum += RegistersOf(*member.type);
        return sum;
    }
    default:
        return 1;
    }
}

/// Cells row by row; the registers hold columns if the type says so.
void HlConstants::Lay(const HlType& type, uint32_t& number, HlRefs& refs)
{
    if (type.kind == HlKind::Array) {
        for (uint32_t i = 0; i < type.count; ++i)
            Lay(*type.element, number, refs);
        return;
    }
    if (type.kind == HlKind::Struct) {
        for (const HlMember& member : type.structure->members)
            Lay(*member.type, number, refs);
        return;
    }
    const bool isTurned = type.IsMatrix() && type.isColumnMajor;
    for (unsigned row = 0; row < type.rows; ++row)
        for (unsigned column = 0; column < type.columns; ++column) {
            const uint32_t at = number + (isTurned ? column : row);
            refs.emplace_back(graph.Leaf(HlOp::Constant, at), isTurned ? row : column);
        }
    number += RegistersOf(type);
}

HlRefs HlConstants::Read(const HlVariable& variable)
{
    const HlType& type = *variable.type;
    const HlType& element = type.kind == HlKind::Array ? *type.element : type;
    const auto [found, isNew] = byVariable.try_emplace(&variable, uniforms.size());
    if (isNew) {
        HlUniform& uniform = uniforms.emplace_back();
        uniform.variable = &variable;
        uniform.isSampler = element.kind == HlKind::Sampler;
        uniform.count = uniform.isSampler ? type.cells : RegistersOf(type);
        uniform.first = uniform.isSampler ? static_cast<uint32_t>(samplers.size()) : registers;
        if (uniform.isSampler)
            samplers.resize(samplers.size() + uniform.count);
        else
            registers += uniform.count;
    }
    const HlUniform& uniform = uniforms[found->second];
    HlRefs refs;
    if (uniform.isSampler) {
        for (uint32_t i = 0; i < uniform.count; ++i)
            refs.emplace_back(graph.Leaf(HlOp::Sampler, uniform.first + i), 0);
        return refs;
    }
    uint32_t number = uniform.first;
    Lay(type, number, refs);
    return refs;
}

HlUniform* HlConstants::FindByRegister(uint32_t number)
{
    for (HlUniform& uniform : uniforms)
        if (!uniform.isSampler && number >= uniform.first && number - uniform.first < uniform.count)
            return &uniform;
    return nullptr;
}

const HlUniform* HlConstants::Find(const HlVariable& variable) const
{
    const auto found = byVariable.find(&variable);
    return found == byVariable.end() ? nullptr : &uniforms[found->second];
}

bool HlConstants::UseSampler(uint32_t number, shader::SamplerKind kind)
{
    HlUsedSampler& sampler = samplers[number];
    const bool fits = sampler.kind == shader::SamplerKind::Unknown || sampler.kind == kind;
    sampler.kind = kind;
    return fits;
}

/// At the register that the text names, or at the first that are free.
bool HlConstants::Place(HlUniform& uniform, uint32_t limit)
{
    const auto isFree = [&](uint32_t first) {
        for (uint32_t i = 0; i < uniform.used; ++i)
            if (taken[first + i])
                return false;
        return true;
    };
    const bool isTold = uniform.variable->registerKind != 0;
    uint32_t first = isTold ? uniform.variable->registerNumber : 0;
    if (uniform.used > limit || first > limit - uniform.used)
        return false;
    while (!isFree(first))
        if (isTold || ++first > limit - uniform.used)
            return false;
    uniform.place = first;
    std::fill_n(taken.begin() + first, uniform.used, true);
    return true;
}

std::string HlConstants::Assign(const std::vector<bool>& isReadRegister, uint32_t floatCount,
                                uint32_t samplerCount)
{
    std::vector<bool> takenSamplers(samplerCount);
    uint32_t wholes = 0;
    for (HlUniform& uniform : uniforms) {
        for (uint32_t i = 0; i < uniform.count; ++i) {
            const bool isRead =
                uniform.isSampler ? samplers[uniform.first + i].kind != shader::SamplerKind::Unknown
                                  : isReadRegister[uniform.first + i];
            uniform.used = isRead ? i + 1 : uniform.used;
        }
        if (uniform.countsRounds)
            uniform.wholePlace = wholes++;
    }
    taken.assign(floatCount, false);
    for (const bool isTold : {true, false})
        for (const bool isSampler : {true, false}) {
            taken.swap(isSampler ? takenSamplers : taken);
            for (HlUniform& uniform : uniforms) {
                const bool isNow = uniform.isSampler == isSampler && uniform.used > 0 &&
                                   (uniform.variable->registerKind != 0) == isTold;
                if (isNow && !Place(uniform, isSampler ? samplerCount : floatCount))
                    return std::string(uniform.variable->name);
            }
            taken.swap(isSampler ? takenSamplers : taken);
        }
    places.assign(registers, kHlNoRegister);
    for (const HlUniform& uniform : uniforms)
        for (uint32_t i = 0; i < uniform.used; ++i)
            (uniform.isSampler ? samplers[uniform.first + i].place : places[uniform.first + i]) =
                uniform.place + i;
    return "";
}

uint32_t HlConstants::PlaceOf(uint32_t number) const
{
    return places[number];
}

} // namespace headless::hl
