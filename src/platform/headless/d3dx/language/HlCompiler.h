#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/headless/d3dx/language/HlComputation.h"
#include "platform/headless/d3dx/language/HlParser.h"
#include "platform/headless/d3dx/language/HlRunner.h"

namespace headless::hl {

/// A compiled shader, or what is wrong with its text.
struct HlShader {
    std::vector<shader::Word> words; ///< with its constant table; empty if there are errors
    const HlProfile* profile =
        nullptr; ///< of the code, which may be larger than the one that was named
    std::vector<HlMessage> messages;
    bool lacksProfile = false; ///< its target is none that is known

    bool IsMade() const { return !words.empty(); }
};

/// Compiles the shaders of one text. `docs/effects.md` tells what the language has here.
class HlCompiler {
public:
    /// `text` is that of the whole effect, after its macros, and outlives this.
    explicit HlCompiler(std::span<const FxToken> text);

    /// Compiles a function. `argumentsAt` is the place in the text of the bracket that begins the arguments
    /// of `compile`; those of equal text are compiled once.
    std::shared_ptr<const HlShader> Compile(const FxToken& profile, const FxToken& function,
                                            size_t argumentsAt);
    /// The same with a profile that replaces the one in the text.
    std::shared_ptr<const HlShader> Compile(std::string_view profile, const FxToken& at,
                                            const FxToken& function, size_t argumentsAt);
    /// A call of a function with values of those shapes, for a value that no shader computes. Null after
    /// errors, which `log` gets.
    std::shared_ptr<const HlComputation> Call(const FxToken& function,
                                              const std::vector<HlShape>& arguments, HlLog& log);

private:
    void ReadOnce();
    bool Try(const HlProfile& profile, HlFunction& function,
             const std::vector<HlExpression*>& arguments, HlLog& log, HlShader& shaderOut,
             bool& isTooLargeOut);
    HlFunction* FindFunction(const FxToken& name, HlLog& log);
    void Run(std::string_view profile, const FxToken& at, const FxToken& function,
             size_t argumentsAt, HlShader& shaderOut);

    std::span<const FxToken> words;
    HlUnit unit;
    HlParser parser;
    HlBudget budget;
    bool isRead = false;
    std::map<std::string, std::shared_ptr<const HlShader>> known;
};

} // namespace headless::hl
