// Words, and the doors of the parser.

#include "platform/headless/d3dx/language/HlParser.h"

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/language/HlUnused.h"

namespace headless::hl {

bool HlParser::Accept(std::string_view sign)
{
    const bool fits = Is(sign);
    position += fits ? 1 : 0;
    return fits;
}

bool HlParser::Expect(std::string_view sign)
{
    return Accept(sign) || Unexpected("'" + std::string(sign) + "'");
}

bool HlParser::Fail(FxPlace place, FxError kind, const std::string& text)
{
    if (log)
        log->Error(place, kind, text);
    return false;
}

bool HlParser::Unexpected(const std::string& wanted)
{
    const FxToken& word = Peek();
    const bool isAtEnd = word.kind == fx::FxTokenKind::End;
    const FxPlace place = isAtEnd && end > 0 ? words[end - 1].place : word.place;
    return Fail(place, FxError::Syntax, wanted + " is expected, not " + FxDescribe(word));
}

bool HlParser::SkipBrackets(std::string_view open, std::string_view close)
{
    size_t depth = 0;
    do {
        if (position >= end)
            return false;
        depth += Is(open) ? 1 : 0;
        depth -= Is(close) ? 1 : 0;
        ++position;
    } while (depth > 0);
    return true;
}

/// Skips what is no declaration for shaders: to behind its `;`, or behind its block.
void HlParser::SkipDeclaration(size_t begin)
{
    position = begin;
    while (position < end && !Is(";") && !Is("{"))
        ++position;
    if (Is("{"))
        SkipBrackets("{", "}");
    else
        ++position;
}

void HlParser::ReadDeclarations()
{
    log = nullptr;
    position = 0;
    end = words.size();
    while (position < end) {
        const size_t begin = position;
        nesting = 0;
        if (!TopLevel())
            SkipDeclaration(begin);
    }
}

bool HlParser::ReadBody(HlFunction& function, HlLog& target)
{
    if (function.isRead)
        return true;
    log = &target;
    position = function.bodyBegin;
    end = function.bodyEnd;
    nesting = 0;
    function.body = Block();
    function.isRead = function.body != nullptr; // each shader that calls it tells what is wrong
    if (function.isRead)
        HlFindUnused(function);
    return function.isRead;
}

bool HlParser::ReadArguments(size_t begin, HlLog& target, std::vector<HlExpression*>& argumentsOut,
                             size_t& endOut)
{
    log = &target;
    position = begin;
    end = words.size();
    nesting = 0;
    HlExpression* const call = New(HlExpressionKind::Call, Peek().place);
    if (!Expect("(") || !Arguments(*call))
        return false;
    argumentsOut = call->parts;
    endOut = position;
    return true;
}

} // namespace headless::hl
