#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxParameter.h"
#include "platform/headless/d3dx/effect/FxTypes.h"

namespace headless::fx {

/// A pass. Its address is its handle, as for a technique.
struct FxPass {
    std::string name;
    std::vector<std::unique_ptr<FxParameter>> annotations;
    std::vector<FxAssignment> states;
    /// What `GetPassDesc` returns as a shader's code if it is not assembled here: the version and an
    /// end token only. A version of 0 means no shader.
    std::array<DWORD, 2> vertexFunction = {0, 0x0000FFFF};
    std::array<DWORD, 2> pixelFunction = {0, 0x0000FFFF};
    std::shared_ptr<FxShader> vertexShader; ///< assembled; null otherwise
    std::shared_ptr<FxShader> pixelShader;
    std::string place; ///< in the text, as errors show it
    std::string lack;  ///< why this host cannot draw it, with the place; "" if it can
};

struct FxTechnique {
    std::string name;
    std::vector<std::unique_ptr<FxParameter>> annotations;
    std::vector<std::unique_ptr<FxPass>> passes;
    std::vector<FxStateKey> touched; ///< every state that a pass may change, each once
};

/// Everything that the text of an effect declares.
struct FxModel {
    FxNames names;
    std::vector<std::unique_ptr<FxParameter>> parameters;
    std::vector<std::unique_ptr<FxParameter>> constants; ///< `static`: callers cannot see them
    std::vector<std::unique_ptr<FxTechnique>> techniques;
    std::string lack; ///< why no technique of it is usable on this host; "" if the text was read
};

} // namespace headless::fx
