#pragma once

#include <d3dx9.h>

#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxMacros.h"

namespace headless::fx {

/// An effect's text after includes, conditions and macros.
class FxPreprocessor {
public:
    FxPreprocessor(FxSources& textSources, FxDiagnostics& log);

    /// `macros` ends with a record of nulls; null for none.
    bool Define(const D3DXMACRO* macros);
    /// Appends the tokens of `bytes`, known as `path`, to `wordsOut`.
    bool Run(const std::string& path, std::string_view bytes, std::vector<FxToken>& wordsOut);

private:
    struct Source {
        std::string path;
        const void* data = nullptr;
        std::vector<FxToken> words;
        size_t position = 0;
        size_t conditions = 0;  ///< open when the file began
        uint32_t file = 0;      ///< the file that places refer to
        uint32_t lineShift = 0; ///< set by `#line`, modulo 2^32
    };
    struct Condition {
        FxPlace place;
        bool isActive;
        bool wasActive; ///< one of its branches was taken
        bool isOuterActive;
        bool sawElse;
    };
    using Words = std::span<const FxToken>;

    bool Push(const std::string& path, const FxSourceText& text, const void* data, FxPlace place);
    bool FinishSource();
    bool IsActive() const { return conditions.empty() || conditions.back().isActive; }
    Words TakeText();
    std::vector<FxToken> TakeLine();
    bool Directive(Words line);
    bool ConditionDirective(std::string_view name, Words line, bool& wasOneOut);
    bool Begin(bool isActive, FxPlace place);
    bool BeginIfDefined(std::string_view name, Words line);
    bool ElseIf(Words line);
    bool Else(FxPlace place);
    bool EndIf(FxPlace place);
    bool Evaluate(Words line, bool& valueOut);
    bool DefineDirective(Words line);
    bool Undefine(Words line);
    bool Include(Words line);
    bool SetLine(Words line);
    bool RaiseError(Words line);
    void Pragma(Words line);

    FxSources& sources;
    FxDiagnostics& diagnostics;
    FxMacros macros;
    std::vector<Source> stack;
    std::vector<Condition> conditions;
    bool packsRows = false; ///< `#pragma pack_matrix(row_major)`
    size_t includes = 0;
    size_t tokensRead = 0;
};

} // namespace headless::fx
