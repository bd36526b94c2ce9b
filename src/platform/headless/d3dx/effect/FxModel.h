#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxParameter.h"
#include "platform/headless/d3dx/effect/FxTypes.h"

namespace headless::fx {

/// A pass. Its address is its handle, as that of a technique.
struct FxPass {
    std::string name;
    std::vector<std::unique_ptr<FxParameter>> annotations;
    std::vector<FxAssignment> states;
    /// What `GetPassDesc` shows of a shader that would have to be compiled: the version and the end of
    /// code, as there is none on this host. A version of 0 is no shader.
    std::array<DWORD, 2> vertexFunction = {0, 0x0000FFFF};
    std::array<DWORD, 2> pixelFunction = {0, 0x0000FFFF};
    std::string place; ///< in the text, as errors name it
    std::string lack;  ///< why this host cannot draw it, with the place; "" for no reason
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
    std::vector<std::unique_ptr<FxParameter>> constants; ///< `static` ones, which nobody sees
    std::vector<std::unique_ptr<FxTechnique>> techniques;
    std::string
        lack; ///< why this host has no technique of it at all; "" where it has read the text
};

} // namespace headless::fx
