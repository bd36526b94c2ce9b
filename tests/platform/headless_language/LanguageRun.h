#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxConstantTable.h"
#include "platform/headless/d3dx/language/HlCompiler.h"
#include "tests/platform/headless_shader/ShaderRun.h"

namespace headless::hl {

using shader::Four;

/// A shader from text: what `compile PROFILE main(ARGUMENTS)` gives for the functions in it.
struct CompiledText {
    std::shared_ptr<const HlShader> shader;
    std::string messages; ///< "1,5 X3000: text", one a line; warnings begin with "warning "
};

CompiledText CompileText(const std::string& text, const std::string& profile,
                         const std::string& arguments = "");

/// The instructions of a shader as assembler text.
std::string ListingOf(const HlShader& shader);

/// A compiled shader with its constants, found by the names in its table.
class LanguageRun {
public:
    LanguageRun(const std::string& text, const std::string& profile,
                const std::string& arguments = "");

    bool IsMade() const { return made.shader->IsMade(); }
    /// Sets registers of a constant from its first on; does nothing if the shader does not read it.
    void Set(const std::string& name, const std::vector<Four>& registers);
    void SetWhole(const std::string& name, int value);
    const fx::FxConstant* Find(const std::string& name) const;
    /// What the shader returns: the colour of a pixel shader, TEXCOORD0 of a vertex shader.
    Four Result();

    CompiledText made;
    std::unique_ptr<shader::ShaderRun> run; ///< null if there are errors
    std::vector<fx::FxConstant> constants;
};

/// A shader whose function `main` returns `expression`, which has the type float4. In vertex shaders it
/// goes to TEXCOORD0.
std::string TextOf(const std::string& declarations, const std::string& expression,
                   const std::string& profile);

} // namespace headless::hl
