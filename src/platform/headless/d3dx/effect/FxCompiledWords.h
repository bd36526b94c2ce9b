#pragma once

#include <d3dx9.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace headless::fx {

// The words of a compiled effect and of the programs in it. All numbers are 32 bits, the low byte first.

/// Reads a file forwards; past its end nothing is read.
class FxCompiledWords {
public:
    FxCompiledWords() = default;
    explicit FxCompiledWords(std::string_view all, size_t start = 0) : bytes(all), position(start)
    {}

    /// False, and `valueOut` unchanged, if the file ends before.
    bool Next(uint32_t& valueOut)
    {
        std::string_view part;
        if (!Take(sizeof valueOut, part))
            return false;
        valueOut = WordAt(part, 0);
        return true;
    }
    /// All of them, or false.
    template <typename... Words>
    bool NextOf(Words&... wordsOut)
    {
        return (Next(wordsOut) && ...);
    }
    bool Take(size_t count, std::string_view& partOut)
    {
        if (position > bytes.size() || count > bytes.size() - position)
            return false;
        partOut = bytes.substr(position, count);
        position += count;
        return true;
    }
    /// Bytes with their length before them and, behind them, what fills the last word.
    bool TakeBlock(std::string_view& blockOut)
    {
        uint32_t size = 0;
        std::string_view padding;
        return Next(size) && Take(size, blockOut) && Take((4 - size % 4) % 4, padding);
    }
    size_t Position() const { return position; }
    size_t Left() const { return position < bytes.size() ? bytes.size() - position : 0; }

    static uint32_t WordAt(std::string_view part, size_t at)
    {
        const auto byte = [&](size_t i) {
            return static_cast<uint32_t>(static_cast<unsigned char>(part[at + i]));
        };
        return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
    }

private:
    std::string_view bytes;
    size_t position = 0;
};

/// The whole words of some bytes.
std::vector<DWORD> FxWordsOf(std::string_view bytes);

/// The contents of a comment behind the version word of a program: the first with these four letters.
/// Nothing if there is none.
std::optional<std::span<const DWORD>> FxFindComment(std::span<const DWORD> code,
                                                    std::string_view letters);

/// The text at a byte offset into some words, up to its end mark. Nothing if it has no end.
std::optional<std::string> FxTextAt(std::span<const DWORD> words, size_t offset);

} // namespace headless::fx
