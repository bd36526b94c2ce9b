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
    ShaderConstant, ///< has a meaning only beside a shader
    VertexFormat,
    PatchSegments,
};

/// How a value becomes what the device takes.
enum class FxStateValue {
    Number,
    Truth,
    Float,
    Color,  ///< a packed number, or a vector of 3 or 4
    Floats, ///< `floats` of them in a row
    Matrix,
    Object,
};

/// A word that stands for a number, in the values of one state.
struct FxStateWord {
    std::string_view name; ///< without the prefix that the public enumeration has
    DWORD value;
};

/// The words of one public enumeration.
struct FxStateWords {
    std::string_view prefix; ///< may stand before each word
    std::span<const FxStateWord> words;

    /// Null if there is none of the name, letter case aside.
    const FxStateWord* Find(std::string_view name) const;
};

/// A state that a pass or a sampler can assign.
struct FxState {
    std::string_view name; ///< letter case does not matter
    FxStateKind kind;
    DWORD number; ///< of the public enumeration; a float's place in the record of material or light
    FxStateValue value;
    const FxStateWords* words = nullptr; ///< null for none
    UINT places = 1;                     ///< indices run below this
    UINT floats = 1;
};

/// Whether the published language has a state of the name that this host does not have.
bool FxIsUnmodelledState(std::string_view name);
/// Null if there is none of the name.
const FxState* FxFindPassState(std::string_view name);
/// The states within `sampler_state`, texture included.
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
