#include "platform/headless/d3dx/effect/FxPreprocessor.h"

#include <charconv>
#include <utility>

#include "platform/headless/d3dx/effect/FxCondition.h"
#include "platform/headless/d3dx/effect/FxLimits.h"

namespace headless::fx {

namespace {

/// Macros that every effect can test.
constexpr char kPredefined[] = "#define D3DX 1\n"
                               "#define D3DX_VERSION 0x0902\n"
                               "#define DIRECT3D 1\n"
                               "#define DIRECT3D_VERSION 0x0900\n";

} // namespace

FxPreprocessor::FxPreprocessor(FxSources& textSources, FxDiagnostics& log)
    : sources(textSources),
      diagnostics(log),
      macros(textSources, log)
{}

bool FxPreprocessor::Define(const D3DXMACRO* given)
{
    std::string text = kPredefined;
    for (; given && given->Name && text.size() <= kFxMaxFileBytes; ++given)
        text += std::string("#define ") + given->Name + ' ' +
                (given->Definition ? given->Definition : "") + '\n';
    std::vector<FxToken> none;
    return Run("macros", text, none);
}

bool FxPreprocessor::Push(const std::string& path, const FxSourceText& text, const void* data,
                          FxPlace place)
{
    if (stack.size() == kFxMaxIncludeDepth)
        return diagnostics.Fail(place, FxError::Limit, "includes lie too deep in one another");
    Source source;
    source.path = path;
    source.data = data;
    source.file = diagnostics.AddFile(path);
    source.conditions = conditions.size();
    if (!FxLex(text, source.file, kFxMaxTokens - tokensRead, diagnostics, source.words))
        return false;
    tokensRead += source.words.size();
    stack.push_back(std::move(source));
    return true;
}

bool FxPreprocessor::Run(const std::string& path, std::string_view bytes,
                         std::vector<FxToken>& wordsOut)
{
    const FxSourceText* text = sources.Add(bytes);
    if (!text)
        return diagnostics.Fail({diagnostics.AddFile(path), 1, 1}, FxError::Limit,
                                "the effect's text is too long");
    if (!Push(path, *text, nullptr, FxPlace()))
        return false;
    while (!stack.empty()) {
        const Source& source = stack.back();
        if (source.position == source.words.size()) {
            if (!FinishSource())
                return false;
        } else if (source.words[source.position].startsLine &&
                   source.words[source.position].Is("#")) {
            if (!Directive(TakeLine()))
                return false;
        } else {
            const Words words = TakeText();
            const size_t first = wordsOut.size();
            if (words.size() > first) // growing step by step would take twice the memory
                wordsOut.reserve(first + words.size());
            if (IsActive() && !macros.Expand(words, wordsOut))
                return false;
            for (size_t i = first; i < wordsOut.size(); ++i)
                wordsOut[i].packsRows = packsRows;
        }
    }
    return true;
}

bool FxPreprocessor::FinishSource()
{
    if (conditions.size() > stack.back().conditions)
        return diagnostics.Fail(conditions.back().place, FxError::UnbalancedCondition,
                                "the condition has no #endif");
    stack.pop_back();
    return true;
}

/// Everything up to the next directive: a macro's arguments may span several lines. It stays where it is, as a
/// text may be one million words.
FxPreprocessor::Words FxPreprocessor::TakeText()
{
    Source& source = stack.back();
    const size_t first = source.position;
    size_t& end = source.position;
    for (; end < source.words.size(); ++end) {
        FxToken& word = source.words[end];
        if (word.startsLine && word.Is("#"))
            break;
        word.place.line += source.lineShift;
        word.place.file = source.file;
    }
    return Words(source.words).subspan(first, end - first);
}

std::vector<FxToken> FxPreprocessor::TakeLine()
{
    Source& source = stack.back();
    std::vector<FxToken> words;
    do {
        FxToken word = source.words[source.position++];
        word.place.line += source.lineShift;
        word.place.file = source.file;
        words.push_back(word);
    } while (source.position < source.words.size() && !source.words[source.position].startsLine);
    return words;
}

bool FxPreprocessor::Directive(Words line)
{
    if (line.size() == 1)
        return true;
    const std::string_view name = line[1].text;
    bool wasCondition = false;
    if (!ConditionDirective(name, line, wasCondition))
        return false;
    if (wasCondition || !IsActive())
        return true;
    if (name == "pragma") {
        Pragma(line);
        return true;
    }

    static constexpr struct {
        std::string_view name;
        bool (FxPreprocessor::*run)(Words line);
    } kDirectives[] = {
        {"define", &FxPreprocessor::DefineDirective}, {"undef", &FxPreprocessor::Undefine},
        {"include", &FxPreprocessor::Include},        {"line", &FxPreprocessor::SetLine},
        {"error", &FxPreprocessor::RaiseError},
    };
    for (const auto& directive : kDirectives)
        if (directive.name == name)
            return (this->*directive.run)(line);
    return diagnostics.Fail(line[1].place, FxError::BadDirective,
                            "there is no directive " + FxDescribe(line[1]));
}

/// `#pragma pack_matrix(row_major)`; all others do nothing.
void FxPreprocessor::Pragma(Words line)
{
    if (line.size() > 4 && line[2].Is("pack_matrix") && line[3].Is("("))
        packsRows = line[4].Is("row_major");
}

// ---- Conditions

bool FxPreprocessor::ConditionDirective(std::string_view name, Words line, bool& wasOneOut)
{
    wasOneOut = true;
    if (name == "if") {
        bool value = false;
        return (!IsActive() || Evaluate(line, value)) && Begin(value, line[0].place);
    }
    if (name == "ifdef" || name == "ifndef")
        return BeginIfDefined(name, line);
    if (name == "elif")
        return ElseIf(line);
    if (name == "else")
        return Else(line[0].place);
    if (name == "endif")
        return EndIf(line[0].place);
    wasOneOut = false;
    return true;
}

bool FxPreprocessor::Begin(bool isActive, FxPlace place)
{
    if (conditions.size() == kFxMaxConditionDepth)
        return diagnostics.Fail(place, FxError::Limit, "conditions lie too deep in one another");
    const bool isOuterActive = IsActive();
    conditions.push_back(
        {place, isOuterActive && isActive, isOuterActive && isActive, isOuterActive, false});
    return true;
}

bool FxPreprocessor::BeginIfDefined(std::string_view name, Words line)
{
    if (IsActive() && (line.size() < 3 || line[2].kind != FxTokenKind::Identifier))
        return diagnostics.Fail(line[1].place, FxError::BadDirective,
                                '#' + std::string(name) + " needs a name");
    const bool isDefined = line.size() > 2 && macros.IsDefined(line[2].text);
    return Begin(isDefined == (name == "ifdef"), line[0].place);
}

bool FxPreprocessor::ElseIf(Words line)
{
    if (conditions.size() <= stack.back().conditions || conditions.back().sawElse)
        return diagnostics.Fail(line[0].place, FxError::UnbalancedCondition,
                                "#elif belongs to no condition");
    Condition& condition = conditions.back();
    bool value = false;
    if (condition.isOuterActive && !condition.wasActive && !Evaluate(line, value))
        return false;
    condition.isActive = value;
    condition.wasActive = condition.wasActive || value;
    return true;
}

bool FxPreprocessor::Else(FxPlace place)
{
    if (conditions.size() <= stack.back().conditions || conditions.back().sawElse)
        return diagnostics.Fail(place, FxError::UnbalancedCondition,
                                "#else belongs to no condition");
    Condition& condition = conditions.back();
    condition.isActive = condition.isOuterActive && !condition.wasActive;
    condition.wasActive = true;
    condition.sawElse = true;
    return true;
}

bool FxPreprocessor::EndIf(FxPlace place)
{
    if (conditions.size() <= stack.back().conditions)
        return diagnostics.Fail(place, FxError::UnbalancedCondition,
                                "#endif belongs to no condition");
    conditions.pop_back();
    return true;
}

/// Resolves `defined` first: its operand must not be expanded.
bool FxPreprocessor::Evaluate(Words line, bool& valueOut)
{
    std::vector<FxToken> words;
    for (size_t i = 2; i < line.size(); ++i) {
        FxToken word = line[i];
        if (word.Is("defined")) {
            const bool hasBrackets =
                i + 3 < line.size() && line[i + 1].Is("(") && line[i + 3].Is(")");
            const size_t name = i + (hasBrackets ? 2 : 1);
            if (name >= line.size() || line[name].kind != FxTokenKind::Identifier)
                return diagnostics.Fail(word.place, FxError::BadCondition, "defined needs a name");
            word.kind = FxTokenKind::Number;
            word.text = macros.IsDefined(line[name].text) ? "1" : "0";
            i = name + (hasBrackets ? 1 : 0);
        }
        words.push_back(word);
    }
    std::vector<FxToken> expanded;
    return macros.Expand(words, expanded) &&
           FxEvaluateCondition(expanded, line[1].place, diagnostics, valueOut);
}

// ---- The others

bool FxPreprocessor::DefineDirective(Words line)
{
    return macros.Define(line.subspan(2), line[1].place);
}

bool FxPreprocessor::Undefine(Words line)
{
    if (line.size() < 3 || line[2].kind != FxTokenKind::Identifier)
        return diagnostics.Fail(line[1].place, FxError::BadDirective, "#undef needs a name");
    macros.Undefine(line[2].text);
    return true;
}

/// The name is in quotation marks or angle brackets, possibly from a macro. In angle brackets it is
/// assembled from its tokens.
bool FxPreprocessor::Include(Words line)
{
    std::vector<FxToken> words;
    if (!macros.Expand(line.subspan(2), words))
        return false;
    std::string name;
    const bool isSystem = !words.empty() && words[0].Is("<");
    if (isSystem) {
        for (size_t i = 1; i < words.size() && !words[i].Is(">"); ++i)
            name += (words[i].spaceBefore && i > 1 ? " " : "") + std::string(words[i].text);
    } else if (!words.empty() && words[0].kind == FxTokenKind::String) {
        name = words[0].text.substr(1, words[0].text.size() - 2);
    }
    const FxPlace place = words.empty() ? line[1].place : line[2].place;
    if (name.empty() || (isSystem && !words.back().Is(">")))
        return diagnostics.Fail(place, FxError::BadDirective, "#include needs a file name");
    if (++includes > kFxMaxIncludes)
        return diagnostics.Fail(place, FxError::Limit, "there are too many includes");
    FxSources::Included file;
    if (!sources.Include(name, isSystem, stack.back().path, stack.back().data, file))
        return diagnostics.Fail(place, FxError::UnreadableInclude,
                                "the file '" + name + "' cannot be included");
    return Push(file.path, *file.text, file.data, place);
}

/// `#line` numbers the line that follows.
bool FxPreprocessor::SetLine(Words line)
{
    Source& source = stack.back();
    uint32_t number = 0;
    const std::string_view digits = line.size() > 2 ? line[2].text : std::string_view();
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size())
        return diagnostics.Fail(line[1].place, FxError::BadDirective, "#line needs a number");
    source.lineShift += number - line[0].place.line - 1;
    if (line.size() > 3 && line[3].kind == FxTokenKind::String)
        source.file =
            diagnostics.AddFile(std::string(line[3].text.substr(1, line[3].text.size() - 2)));
    return true;
}

bool FxPreprocessor::RaiseError(Words line)
{
    std::string text;
    for (const FxToken& word : line.subspan(2))
        text += (word.spaceBefore && !text.empty() ? " " : "") + std::string(word.text);
    return diagnostics.Fail(line[0].place, FxError::ErrorDirective, text);
}

} // namespace headless::fx
