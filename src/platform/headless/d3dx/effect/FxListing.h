#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/headless/d3dx/effect/FxModel.h"
#include "platform/headless/d3dx/effect/FxProgramListing.h"

namespace headless::fx {

/// The text of a compiled effect, much as its language has it: parameters, then techniques with the states of
/// their passes. Shaders are assembler text; computations are instructions, as a program of them runs.
class FxListing {
public:
    /// `source` outlives this.
    explicit FxListing(const FxModel& source);

    /// False if the text is longer than anybody reads.
    bool Write(std::string& textOut);

private:
    using List = std::vector<std::unique_ptr<FxParameter>>;

    bool Parameter(const FxParameter& parameter);
    void Content(const FxParameter& parameter);
    void Technique(const FxTechnique& technique);
    void Pass(const FxPass& pass);
    void Annotations(const List& list);
    bool State(const FxAssignment& assignment, std::string_view indent);
    void Value(const FxAssignment& assignment, std::string_view indent);
    void Object(const FxAssignment& assignment, std::string_view indent);
    void Computation(const FxProgram& program, std::string_view indent);
    void Shader(const FxShader& shader, std::string_view indent);
    void Line(std::string_view indent, std::string_view rest);
    bool IsShort() const;

    const FxModel& model;
    FxListedNames names;
    std::string text;
};

} // namespace headless::fx
