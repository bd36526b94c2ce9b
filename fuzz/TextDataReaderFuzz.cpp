// Any text, read by a sequence of operations that its first bytes select: once from memory and once
// from a stream, which must agree in every result, value and position.

#include "base/TextDataFileReader.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/Log.h"

namespace {

constexpr size_t kMaxOperations = 64;

class Reader : public TextDataFileReader {
public:
    /// Runs one operation and returns everything visible of it.
    std::string Do(uint8_t operation)
    {
        int32_t result = 0;
        std::string value;
        try {
            result = Read(operation, &value);
        } catch (const ErrorMsg& error) {
            return std::string("error ") + error.message;
        }
        if (position < 0 || position > size)
            std::abort();
        return std::to_string(result) + '@' + std::to_string(position) + ' ' + value;
    }

private:
    int32_t Read(uint8_t operation, std::string* valueOut)
    {
        TokenBuffer token = "";
        String text;
        int32_t number = 0;
        float reals[3] = {};
        int32_t result = 0;
        switch (operation % 11) {
        case 0:
            result = ReadWord(token);
            break;
        case 1:
            result = ReadNumberText(token);
            break;
        case 2:
            result = ReadQuoted(token);
            break;
        case 3:
            result = ReadQuoted(&text);
            break;
        case 4:
            result = ReadInt(&number);
            break;
        case 5:
            result = ReadFloat(&reals[0]);
            break;
        case 6:
            result = ReadVector(reals);
            break;
        case 7:
            result = SkipTo(static_cast<char>(operation));
            break;
        case 8:
            result = SkipSpace();
            break;
        case 9:
            result = SeekRelative(static_cast<int8_t>(operation));
            break;
        default:
            result = PeekChar() * 256 + ReadChar();
            break;
        }
        *valueOut = std::string(token) + text.c_str() + std::to_string(text.length);
        for (const float real : reals)
            number ^= std::bit_cast<int32_t>(real);
        *valueOut += std::to_string(number);
        return result;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    gLogEntries = kMaxLogEntries; // nothing is written
    const size_t operations = size < kMaxOperations ? size : kMaxOperations;
    const size_t textSize = size - operations;
    if (textSize == 0)
        return 0;
    auto copy = std::make_unique<uint8_t[]>(textSize);
    std::memcpy(copy.get(), data + operations, textSize);

    Reader fromStream;
    fromStream.SetStream(FileStream(fmemopen(copy.get(), textSize, "rb")),
                         static_cast<int32_t>(textSize));
    auto image = std::make_unique<uint8_t[]>(textSize);
    std::memcpy(image.get(), copy.get(), textSize);
    Reader fromMemory;
    fromMemory.SetData(std::move(image), static_cast<int32_t>(textSize));
    for (size_t i = 0; i < operations; ++i) {
        if (fromMemory.Do(data[i]) != fromStream.Do(data[i]))
            std::abort();
    }
    return 0;
}
