#include "platform/headless/d3dx/effect/FxMacros.h"

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxLimits.h"

namespace headless::fx {

namespace {

FxToken WithPlaceOf(FxToken word, const FxToken& call)
{
    word.place = call.place;
    word.startsLine = false;
    return word;
}

} // namespace

bool FxMacros::IsDefined(std::string_view name) const
{
    return macros.contains(name) || name == "__LINE__" || name == "__FILE__";
}

bool FxMacros::Spend(FxPlace place)
{
    if (++spent <= kFxMaxTokens)
        return true;
    return diagnostics.Fail(place, FxError::Limit, "macros yield too much text");
}

// ---- Definitions

/// The bracket must follow the name directly; otherwise it belongs to the replacement.
bool FxMacros::ReadParameters(std::span<const FxToken> words, size_t& positionInOut,
                              FxMacro& macroOut)
{
    size_t& at = positionInOut;
    if (at >= words.size() || !words[at].Is("(") || words[at].spaceBefore)
        return true;
    macroOut.takesArguments = true;
    const FxPlace open = words[at++].place;
    if (at < words.size() && words[at].Is(")")) {
        ++at;
        return true;
    }
    for (; at + 1 < words.size() && words[at].kind == FxTokenKind::Identifier; at += 2) {
        const auto& known = macroOut.parameters;
        if (std::find(known.begin(), known.end(), words[at].text) != known.end())
            return diagnostics.Fail(words[at].place, FxError::BadMacro,
                                    "two parameters of a macro are named " + FxDescribe(words[at]));
        if (known.size() == kFxMaxMacroParameters)
            return diagnostics.Fail(words[at].place, FxError::Limit,
                                    "a macro has too many parameters");
        macroOut.parameters.push_back(words[at].text);
        if (words[at + 1].Is(")")) {
            at += 2;
            return true;
        }
        if (!words[at + 1].Is(","))
            break;
    }
    return diagnostics.Fail(open, FxError::BadMacro, "the parameters of a macro are damaged");
}

bool FxMacros::Define(std::span<const FxToken> words, FxPlace place)
{
    if (words.empty() || words[0].kind != FxTokenKind::Identifier || words[0].Is("defined"))
        return diagnostics.Fail(words.empty() ? place : words[0].place, FxError::BadMacro,
                                "#define needs a name");
    FxMacro macro;
    size_t position = 1;
    if (!ReadParameters(words, position, macro))
        return false;
    macro.body.assign(words.begin() + static_cast<ptrdiff_t>(position), words.end());
    macros[words[0].text] = std::move(macro);
    return true;
}

// ---- Expansion

/// The tokens being expanded: a stack, because a macro's text is read before what follows its call.
class FxMacros::Expansion {
public:
    explicit Expansion(std::span<const FxToken> words)
    {
        frames.push_back({{words.begin(), words.end()}, 0, nullptr});
    }

    /// The next token, null at the end. A macro whose text is used up can be called again.
    const FxToken* Peek()
    {
        while (frames.back().position == frames.back().words.size()) {
            if (frames.back().macro)
                --frames.back().macro->active;
            if (frames.size() == 1)
                return nullptr;
            frames.pop_back();
        }
        return &frames.back().words[frames.back().position];
    }
    void Skip() { ++frames.back().position; }
    void Push(std::vector<FxToken> words, FxMacro& macro)
    {
        ++macro.active;
        frames.push_back({std::move(words), 0, &macro});
    }

private:
    struct Frame {
        std::vector<FxToken> words;
        size_t position;
        FxMacro* macro; ///< null for the text itself; not owned, lives in the table
    };
    std::vector<Frame> frames;
};

bool FxMacros::Expand(std::span<const FxToken> words, std::vector<FxToken>& wordsOut)
{
    return Expand(words, wordsOut, 0);
}

bool FxMacros::MakeBuiltIn(FxToken& wordInOut)
{
    if (wordInOut.kind != FxTokenKind::Identifier || !wordInOut.text.starts_with("__"))
        return true;
    const bool isLine = wordInOut.text == "__LINE__";
    if (!isLine && wordInOut.text != "__FILE__")
        return true;
    const auto text = sources.Keep(isLine ? std::to_string(wordInOut.place.line)
                                          : '"' + diagnostics.FileName(wordInOut.place.file) + '"');
    if (!text)
        return diagnostics.Fail(wordInOut.place, FxError::Limit, "macros yield too much text");
    wordInOut.text = *text;
    wordInOut.kind = isLine ? FxTokenKind::Number : FxTokenKind::String;
    return true;
}

// Kept whole: one loop over the tokens, which also reads the arguments of calls.
bool FxMacros::Expand(std::span<const FxToken> words, std::vector<FxToken>& wordsOut, int depth)
{
    if (depth > kFxMaxArgumentDepth)
        return diagnostics.Fail(words.empty() ? FxPlace() : words[0].place, FxError::Limit,
                                "macro calls lie too deep in one another");
    Expansion expansion(words);
    while (const FxToken* next = expansion.Peek()) {
        FxToken word = *next;
        expansion.Skip();
        if (!Spend(word.place))
            return false;
        const bool mayBeMacro = word.kind == FxTokenKind::Identifier && !word.isFinal;
        const auto found = mayBeMacro ? macros.find(word.text) : macros.end();
        if (found == macros.end() || found->second.active > 0) {
            word.isFinal = word.isFinal || found != macros.end();
            if (!MakeBuiltIn(word))
                return false;
            wordsOut.push_back(word);
            continue;
        }
        FxMacro& macro = found->second;
        Arguments arguments;
        if (macro.takesArguments) {
            next = expansion.Peek();
            if (!next || !next->Is("(")) {
                wordsOut.push_back(word);
                continue;
            }
            int open = 0;
            do {
                next = expansion.Peek();
                if (!next)
                    return diagnostics.Fail(word.place, FxError::BadMacroCall,
                                            "the call of the macro " + FxDescribe(word) +
                                                " is not closed");
                if (!Spend(next->place))
                    return false;
                const bool isOuter = open == 1;
                open += next->Is("(") ? 1 : next->Is(")") ? -1 : 0;
                if (open == 1 && (arguments.empty() || (isOuter && next->Is(","))))
                    arguments.emplace_back();
                else if (open > 0)
                    arguments.back().push_back(*next);
                expansion.Skip();
            } while (open > 0);
        }
        std::vector<FxToken> made;
        if (!Substitute(macro, arguments, word, depth, made))
            return false;
        expansion.Push(std::move(made), macro);
    }
    return true;
}

bool FxMacros::Join(FxToken& leftInOut, const FxToken& right)
{
    const auto text = sources.Keep(std::string(leftInOut.text) + std::string(right.text));
    if (!text)
        return diagnostics.Fail(leftInOut.place, FxError::Limit, "macros yield too much text");
    const FxSourceText joined = {std::string(*text), {}};
    FxDiagnostics ignored;
    std::vector<FxToken> words;
    if (!FxLex(joined, 0, 2, ignored, words) || words.size() != 1)
        return diagnostics.Fail(leftInOut.place, FxError::BadMacroCall,
                                "## makes no word of " + FxDescribe(leftInOut) + " and " +
                                    FxDescribe(right));
    leftInOut.text = *text;
    leftInOut.kind = words[0].kind;
    return true;
}

bool FxMacros::MakeString(const std::vector<FxToken>& words, const FxToken& call,
                          FxToken& stringOut)
{
    std::string text = "\"";
    for (const FxToken& word : words) {
        if (text.size() > kFxMaxFileBytes)
            break;
        if (word.spaceBefore && text.size() > 1)
            text += ' ';
        for (const char c : word.text) {
            if (word.kind == FxTokenKind::String && (c == '"' || c == '\\'))
                text += '\\';
            text += c;
        }
    }
    const auto kept = sources.Keep(text + '"');
    if (!kept)
        return diagnostics.Fail(call.place, FxError::Limit, "macros yield too much text");
    stringOut = call;
    stringOut.kind = FxTokenKind::String;
    stringOut.text = *kept;
    return true;
}

bool FxMacros::Substitute(const FxMacro& macro, const Arguments& arguments, const FxToken& call,
                          int depth, std::vector<FxToken>& wordsOut)
{
    const bool isEmptyCall =
        macro.parameters.empty() && arguments.size() == 1 && arguments[0].empty();
    if (macro.takesArguments && arguments.size() != macro.parameters.size() && !isEmptyCall)
        return diagnostics.Fail(call.place, FxError::BadMacroCall,
                                "the macro " + FxDescribe(call) + " takes " +
                                    std::to_string(macro.parameters.size()) + " arguments, not " +
                                    std::to_string(arguments.size()));
    Arguments expanded(arguments.size());
    std::vector<bool> isExpanded(arguments.size());
    const auto parameterOf = [&](size_t i) {
        const auto place =
            i < macro.body.size()
                ? std::find(macro.parameters.begin(), macro.parameters.end(), macro.body[i].text)
                : macro.parameters.end();
        return static_cast<size_t>(place - macro.parameters.begin());
    };
    const auto isJoint = [&](size_t i) {
        return macro.body[i].Is("##") && i > 0 && i + 1 < macro.body.size();
    };

    bool hasLeft = false;
    for (size_t i = 0; i < macro.body.size(); ++i) {
        if (isJoint(i))
            continue;
        const bool joins = i > 0 && isJoint(i - 1);
        std::vector<FxToken> piece = {macro.body[i]};
        if (const size_t named = parameterOf(i + 1);
            macro.takesArguments && piece[0].Is("#") && named < macro.parameters.size()) {
            if (!MakeString(arguments[named], call, piece[0]))
                return false;
            ++i;
        } else if (const size_t index = parameterOf(i); index < macro.parameters.size()) {
            const bool isRaw = joins || (i + 1 < macro.body.size() && isJoint(i + 1));
            if (!isRaw && !isExpanded[index]) {
                if (!Expand(arguments[index], expanded[index], depth + 1))
                    return false;
                isExpanded[index] = true;
            }
            piece = isRaw ? arguments[index] : expanded[index];
        } else {
            piece[0] = WithPlaceOf(piece[0], call);
        }
        size_t first = 0;
        if (joins && hasLeft && !piece.empty()) {
            if (!Join(wordsOut.back(), piece[first++]))
                return false;
        }
        hasLeft = !piece.empty() || (joins && hasLeft);
        for (; first < piece.size(); ++first) {
            if (!Spend(call.place))
                return false;
            wordsOut.push_back(piece[first]);
        }
    }
    return true;
}

} // namespace headless::fx
