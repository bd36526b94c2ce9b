#pragma once

#include <d3dx9.h>

#include <compare>
#include <span>
#include <string_view>

namespace headless::fx {

/// Where a state lives in the device.
enum class FxStateKind {
    Render,
    Stage,
    Sampler,
    Transform,
    Material,
    Light,
    LightEnable,
    Texture,
    SamplerObject, ///< a sampler parameter: its texture and all its states
    VertexShader,
    PixelShader,
    ShaderConstant, ///< only meaningful with a shader
    VertexFormat,
    PatchSegments,
    Missing, ///< one of a compiled effect that this host lacks
};

/// Which constants of shaders a state sets.
inline constexpr DWORD kFxFloatRegisters = 0, kFxWholeRegisters = 1, kFxTruthRegisters = 2;

/// How a value is converted for the device.
enum class FxStateValue {
    Number,
    Truth,
    Float,
    Color,     ///< a packed number, or a vector of 3 or 4
    Floats,    ///< `floats` of them, contiguous
    Registers, ///< constants of shaders, a register for each row
    Matrix,
    Object,
};

/// A name for a number in the values of one state.
struct FxStateWord {
    std::string_view name; ///< without the prefix that the public enumeration has
    DWORD value;
};

/// The names of one public enumeration.
struct FxStateWords {
    std::string_view prefix; ///< optional before each word
    std::span<const FxStateWord> words;

    /// Null for an unknown name; ignores case.
    const FxStateWord* Find(std::string_view name) const;
};

/// A state that a pass or a sampler can assign.
struct FxState {
    std::string_view name; ///< case is ignored
    FxStateKind kind;
    DWORD number; ///< of the public enumeration; material and light: the float's index
    FxStateValue value;
    const FxStateWords* words = nullptr; ///< null for none
    UINT places = 1;                     ///< valid indices are below this
    UINT floats = 1;
};

/// Whether the published language has a state of this name that this host lacks.
bool FxIsUnmodelledState(std::string_view name);
/// Null for an unknown name.
const FxState* FxFindPassState(std::string_view name);
/// The states allowed in `sampler_state`, including the texture. Null for an unknown name.
const FxState* FxFindSamplerState(std::string_view name);

/// One state of the device.
struct FxStateKey {
    FxStateKind kind;
    DWORD index;
    DWORD number;

    // NOLINTNEXTLINE(modernize-use-nullptr): the comparison with 0 is the compiler's own.
    auto operator<=>(const FxStateKey&) const = default;
};

inline constexpr UINT kFxStageCount = 8;
inline constexpr UINT kFxSamplerCount = 16;
inline constexpr UINT kFxLightCount = 8;

} // namespace headless::fx
