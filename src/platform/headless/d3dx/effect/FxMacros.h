#pragma once

#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/headless/d3dx/effect/FxSources.h"

namespace headless::fx {

/// `#define`: the parameters and the replacement.
struct FxMacro {
    bool takesArguments = false;
    std::vector<std::string_view> parameters;
    std::vector<FxToken> body;
    int active = 0; ///< expansions in progress; while above 0 the name is not expanded
};

/// The macros of an effect and their expansion.
class FxMacros {
public:
    FxMacros(FxSources& textSources, FxDiagnostics& log) : sources(textSources), diagnostics(log) {}

    /// Takes the tokens after `#define`. A different definition replaces an earlier one.
    bool Define(std::span<const FxToken> words, FxPlace place);
    void Undefine(std::string_view name) { macros.erase(name); }
    bool IsDefined(std::string_view name) const;

    /// Appends `words` with all macros replaced. Text produced by macros has the place of the call.
    /// The total amount produced and the nesting of calls in arguments are limited.
    bool Expand(std::span<const FxToken> words, std::vector<FxToken>& wordsOut);

private:
    class Expansion;
    using Arguments = std::vector<std::vector<FxToken>>;

    bool ReadParameters(std::span<const FxToken> words, size_t& positionInOut, FxMacro& macroOut);
    bool Expand(std::span<const FxToken> words, std::vector<FxToken>& wordsOut, int depth);
    bool Substitute(const FxMacro& macro, const Arguments& arguments, const FxToken& call,
                    int depth, std::vector<FxToken>& wordsOut);
    bool Join(FxToken& leftInOut, const FxToken& right);
    bool MakeString(const std::vector<FxToken>& words, const FxToken& call, FxToken& stringOut);
    bool MakeBuiltIn(FxToken& wordInOut);
    bool Spend(FxPlace place);

    FxSources& sources;
    FxDiagnostics& diagnostics;
    std::unordered_map<std::string_view, FxMacro> macros;
    size_t spent = 0;
};

} // namespace headless::fx
