#include "platform/headless/d3dx/effect/FxWords.h"

namespace headless::fx {

bool FxWords::SkipAssembler(std::vector<FxToken>* blockOut)
{
    const FxToken first = Next();
    bool isComment = false;
    for (size_t depth = 1; depth > 0;) {
        if (AtEnd())
            return NotClosed(first);
        const FxToken word = Next();
        isComment = (isComment && !word.startsLine) || word.Is(";");
        const bool goesOn = (Is(";") || Is(",")) && !Peek().startsLine;
        depth += !isComment && word.Is("{") ? 1 : 0;
        depth -= (!isComment || goesOn) && word.Is("}") ? 1 : 0;
        if (blockOut && depth > 0)
            blockOut->push_back(word);
    }
    return true;
}

bool FxWords::SkipValue()
{
    size_t depth = 0;
    const FxToken first = Peek();
    while (!AtEnd()) {
        const FxToken& word = Peek();
        if (depth == 0 && EndsValue(word))
            return true;
        const bool isAssembler =
            (word.IsWord("asm") || word.IsWord("asm_fragment")) && Peek(1).Is("{");
        depth += IsOpening(word) ? 1 : 0;
        depth -= IsClosing(word) ? 1 : 0;
        Next();
        if (isAssembler && !SkipAssembler())
            return false;
    }
    return depth > 0 ? NotClosed(first) : Unexpected("';'");
}

bool FxWords::SkipStatement()
{
    while (!Accept(";")) {
        if (!Accept(",") && IsClosing(Peek()))
            return Unexpected("';'");
        if (!SkipValue())
            return false;
    }
    return true;
}

} // namespace headless::fx
