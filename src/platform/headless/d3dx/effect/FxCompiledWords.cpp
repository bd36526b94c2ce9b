#include "platform/headless/d3dx/effect/FxCompiledWords.h"

namespace headless::fx {

namespace {

constexpr DWORD kCommentCode = 0xFFFE;

DWORD LettersWord(std::string_view letters)
{
    return FxCompiledWords::WordAt(letters, 0);
}

} // namespace

std::vector<DWORD> FxWordsOf(std::string_view bytes)
{
    std::vector<DWORD> words(bytes.size() / sizeof(DWORD));
    for (size_t i = 0; i < words.size(); ++i)
        words[i] = FxCompiledWords::WordAt(bytes, i * sizeof(DWORD));
    return words;
}

std::optional<std::span<const DWORD>> FxFindComment(std::span<const DWORD> code,
                                                    std::string_view letters)
{
    for (size_t at = 1; at + 1 < code.size() && (code[at] & 0xFFFF) == kCommentCode;) {
        const size_t count = code[at] >> 16; // words behind this one; the letters are the first
        if (count > code.size() - at - 1)
            return std::nullopt;
        if (count > 0 && code[at + 1] == LettersWord(letters))
            return code.subspan(at + 2, count - 1);
        at += 1 + count;
    }
    return std::nullopt;
}

std::optional<std::string> FxTextAt(std::span<const DWORD> words, size_t offset)
{
    std::string text;
    for (; offset / 4 < words.size(); ++offset) {
        const char c = static_cast<char>(words[offset / 4] >> offset % 4 * 8 & 0xFF);
        if (c == '\0')
            return text;
        text += c;
    }
    return std::nullopt;
}

} // namespace headless::fx
