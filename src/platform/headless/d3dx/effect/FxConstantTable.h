#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxParameter.h"
#include "platform/headless/d3dx/effect/FxTypes.h"

namespace headless::fx {

/// The sets of registers that a constant table tells apart, with their public numbers.
enum class FxRegisterSet : uint16_t { Truth = 0, Whole = 1, Float = 2, Sampler = 3 };

/// The type of a constant as its program sees it.
struct FxConstantType {
    D3DXPARAMETER_CLASS kind = D3DXPC_SCALAR;
    UINT rows = 1, columns = 1;
    UINT elements = 1;
    struct Member;
    std::vector<Member> members; ///< of a struct
};

struct FxConstantType::Member {
    std::string name;
    FxConstantType type;
};

struct FxConstant {
    std::string name;
    FxRegisterSet set = FxRegisterSet::Float;
    UINT firstRegister = 0;
    UINT registerCount = 0;
    FxConstantType type;
};

/// Reads the contents of a 'CTAB' comment, whose offsets count from its start. False if it is damaged or
/// has more types than `rowsLeft`, which all programs of an effect share.
bool FxReadConstantTable(std::span<const DWORD> table, size_t& rowsLeftInOut,
                         std::vector<FxConstant>& constantsOut);

/// A scalar, a vector or a matrix of an effect that goes to registers.
struct FxNumberBinding {
    const FxParameter* parameter = nullptr; ///< not owned, lives in the effect; no array
    FxRegisterSet set = FxRegisterSet::Float;
    UINT firstRegister = 0;
    UINT registerCount = 0;
    bool isTransposed = false; ///< a register takes a column

    /// A component of a register, converted; what the parameter lacks is 0.
    FxCell Value(UINT registerIndex, UINT component, D3DXPARAMETER_TYPE as) const;
};

struct FxSamplerBinding {
    const FxParameter* sampler = nullptr; ///< not owned, lives in the effect; no array
    UINT index = 0;
};

/// What a program reads from the parameters of its effect.
struct FxProgramInputs {
    std::vector<FxNumberBinding> numbers;
    std::vector<FxSamplerBinding> samplers;

    /// Binds constants to the parameters of the same names. A constant without one stays as it is.
    /// False if that takes more rows than `rowsLeft`, which all programs of an effect share.
    bool Bind(const std::vector<FxConstant>& constants, const FxParameterNames& parameters,
              size_t& rowsLeftInOut);
    bool Reads(const FxParameter& parameter) const;
    /// The stamp of the newest change to a parameter that is read; 0 if none is.
    uint64_t Newest() const;
};

} // namespace headless::fx
