#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/TextDataFileReader.h"
#include "qsa/QSA_TextCursor.h"

/// A text followed by its sentinels.
class PaddedText {
public:
    explicit PaddedText(const std::string& text)
        : bytes(text.size() + kTextPadding, kTextSentinel),
          size(text.size())
    {
        std::copy(text.begin(), text.end(), bytes.begin());
    }
    QSA_TextCursor Cursor() const { return {bytes.data(), bytes.data() + size}; }
    size_t PlaceOf(const QSA_TextCursor& text) const
    {
        return static_cast<size_t>(text.at - bytes.data());
    }

private:
    std::vector<uint8_t> bytes;
    size_t size;
};

class SlowReader : public TextDataFileReader {
public:
    explicit SlowReader(const std::string& text)
    {
        auto bytes = std::make_unique<uint8_t[]>(text.size() + 1);
        std::copy(text.begin(), text.end(), bytes.get());
        SetData(std::move(bytes), static_cast<int32_t>(text.size()));
    }
    using TextDataFileReader::ReadFloat;
    using TextDataFileReader::ReadInt;
    using TextDataFileReader::ReadWord;
    size_t Place() const { return static_cast<size_t>(position); }
};

/// Texts that look like numbers more often than not.
inline std::string NumberLike(std::mt19937& random)
{
    static constexpr char kBytes[] =
        "0123456789012345678901234567890123456789..--++eE \t\n,{}\"*x:\xE4";
    std::string text;
    const size_t length = 1 + random() % 28;
    for (size_t i = 0; i < length; ++i)
        text += kBytes[random() % (sizeof kBytes - 1)];
    return text;
}
