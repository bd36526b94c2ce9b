#include "base/TextDataFileReader.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstring>
#include <utility>

#include "base/FormatText.h"
#include "base/ParseNumber.h"
#include "platform/HostStream.h"

namespace {

// Classes of a byte, as bits of `kCharClasses`.
constexpr uint8_t kSpace = 1;      // below 33
constexpr uint8_t kEndsWord = 2;   // white space, braces, double quote, comma
constexpr uint8_t kEndsNumber = 4; // all but digits, `-`, `+` and `.`

constexpr std::array<uint8_t, 256> MakeCharClasses()
{
    std::array<uint8_t, 256> classes{};
    for (size_t c = 0; c < classes.size(); ++c) {
        const bool isNumber = (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.';
        const bool endsWord = c < 33 || c == '{' || c == '}' || c == '"' || c == ',';
        classes[c] = static_cast<uint8_t>((c < 33 ? kSpace : 0) | (endsWord ? kEndsWord : 0) |
                                          (isNumber ? 0 : kEndsNumber));
    }
    return classes;
}

constexpr std::array<uint8_t, 256> kCharClasses = MakeCharClasses();

bool HasClass(uint8_t byte, uint8_t charClass)
{
    return (kCharClasses[byte] & charClass) != 0;
}

} // namespace

TextDataFileReader::TextDataFileReader()
{
    SetClassName("TextDataFileReader");
}

TextDataFileReader::~TextDataFileReader() = default;

void TextDataFileReader::Error(const char* format, ...)
{
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(message, sizeof message, format, arguments);
    va_end(arguments);

    ErrorClass::Error("%s: %s", fileName, message);
}

void TextDataFileReader::Warning(const char* format, ...)
{
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(message, sizeof message, format, arguments);
    va_end(arguments);

    ErrorClass::Warning("%s: %s", fileName, message);
}

void TextDataFileReader::SetFileName(const char* name)
{
    CopyText(fileName, sizeof fileName, name);
}

void TextDataFileReader::SetData(std::unique_ptr<uint8_t[]> bytes, int32_t sizeBytes)
{
    FreeData();
    data = std::move(bytes);
    size = data && sizeBytes > 0 ? sizeBytes : 0;
    inMemory = 1;
}

void TextDataFileReader::SetStream(FileStream newStream, int32_t sizeBytes)
{
    FreeData();
    stream = std::move(newStream);
    size = stream && sizeBytes > 0 ? sizeBytes : 0;
}

void TextDataFileReader::FreeData()
{
    data.reset();
    stream.reset();
    inMemory = 0;
    atEnd = 0;
    size = 0;
    position = 0;
}

int32_t TextDataFileReader::ReadBytes(void* bufferOut, int32_t number)
{
    const int32_t left = size - position;
    if (left <= 0) {
        atEnd = 1;
        return 0;
    }
    int32_t wanted = std::clamp(number, 0, left);
    if (wanted == 0)
        return 0;
    if (inMemory) {
        std::memcpy(bufferOut, data.get() + position, static_cast<size_t>(wanted));
    } else {
        // A file that became shorter ends where its bytes end.
        const size_t got = ReadStream(stream.get(), bufferOut, static_cast<size_t>(wanted));
        if (static_cast<int32_t>(got) < wanted) {
            wanted = static_cast<int32_t>(got);
            size = position + wanted;
            atEnd = 1;
        }
    }
    position += wanted;
    return wanted;
}

int32_t TextDataFileReader::SeekRelative(int32_t delta)
{
    const int64_t wanted = int64_t{position} + delta;
    const int32_t reached = static_cast<int32_t>(std::clamp<int64_t>(wanted, 0, size));
    if (stream && reached != position)
        std::fseek(stream.get(), reached - position, SEEK_CUR);
    position = reached;
    if (position < size)
        atEnd = 0;
    return reached == wanted ? 1 : 0;
}

int32_t TextDataFileReader::SkipTo(char c)
{
    // QUIRK: the message names the last byte read, not the missing one; logs of broken files are
    // compared by these texts.
    uint8_t byte = static_cast<uint8_t>(c);
    while (NextByte(&byte)) {
        if (byte == static_cast<uint8_t>(c))
            return 0;
    }
    Error("'%c' not found", byte);
    return 1;
}

int32_t TextDataFileReader::SkipSpace()
{
    if (inMemory) {
        while (position < size && HasClass(data.get()[position], kSpace))
            ++position;
        if (position < size)
            return 0;
        atEnd = 1;
        return 1;
    }
    uint8_t byte = 0;
    while (NextByte(&byte)) {
        if (!HasClass(byte, kSpace)) {
            SeekRelative(-1);
            return 0;
        }
    }
    return 1;
}

char TextDataFileReader::PeekChar()
{
    uint8_t byte = 0;
    if (NextByte(&byte))
        SeekRelative(-1);
    return static_cast<char>(byte);
}

char TextDataFileReader::ReadChar()
{
    uint8_t byte = 0;
    NextByte(&byte);
    return static_cast<char>(byte);
}

/// Takes bytes up to the first of `endClass`, which stays unread. Returns 1 if there is none to take.
int32_t TextDataFileReader::ScanRun(uint8_t endClass, TokenView* tokenOut)
{
    int32_t length = 0;
    if (inMemory) {
        const uint8_t* text = data.get() + position;
        const int32_t limit = std::min(size - position, kTokenSize);
        while (length < limit && !HasClass(text[length], endClass))
            ++length;
        *tokenOut = {reinterpret_cast<const char*>(text), length};
        position += length;
        if (position == size)
            atEnd = 1;
    } else {
        length = ScanRunOfStream(endClass);
        *tokenOut = {scratch, length};
    }
    if (length == kTokenSize) {
        Error("String too long (>127)");
        tokenOut->length = kTokenSize - 1;
    }
    return length > 0 ? 0 : 1;
}

int32_t TextDataFileReader::ScanRunOfStream(uint8_t endClass)
{
    int32_t length = 0;
    uint8_t byte = 0;
    while (length < kTokenSize && NextByte(&byte)) {
        if (HasClass(byte, endClass)) {
            SeekRelative(-1);
            break;
        }
        scratch[length++] = static_cast<char>(byte);
    }
    return length;
}

int32_t TextDataFileReader::ScanNumberText(TokenView* tokenOut)
{
    return ScanRun(kEndsNumber, tokenOut);
}

int32_t TextDataFileReader::ScanWord(TokenView* tokenOut)
{
    if (ScanRun(kEndsWord, tokenOut) == 0)
        return 0;
    // A delimiter in first place is itself the word.
    uint8_t byte = 0;
    if (!NextByte(&byte))
        return 1;
    scratch[0] = static_cast<char>(byte);
    *tokenOut = {scratch, 1};
    return 0;
}

static void CopyToken(TokenBuffer& bufferOut, const char* text, int32_t length)
{
    std::memcpy(bufferOut, text, static_cast<size_t>(length));
    bufferOut[length] = 0;
}

int32_t TextDataFileReader::ReadNumberText(TokenBuffer& bufferOut)
{
    bufferOut[0] = 0;
    TokenView token;
    if (ScanNumberText(&token) != 0)
        return 1;
    CopyToken(bufferOut, token.text, token.length);
    return 0;
}

int32_t TextDataFileReader::ReadWord(TokenBuffer& bufferOut)
{
    bufferOut[0] = 0;
    TokenView token;
    if (ScanWord(&token) != 0)
        return 1;
    CopyToken(bufferOut, token.text, token.length);
    return 0;
}

int32_t TextDataFileReader::OpenQuote()
{
    SkipSpace();
    if (ReadChar() == '"')
        return 0;
    Warning("No text string found");
    return 1;
}

int32_t TextDataFileReader::ReadQuoted(TokenBuffer& bufferOut)
{
    if (OpenQuote() != 0)
        return 1; // the old text stays
    bufferOut[0] = 0;
    int32_t length = 0;
    uint8_t byte = 0;
    while (NextByte(&byte)) {
        if (byte == '"')
            return 0;
        if (length == kTokenSize - 1) {
            Error("String too long (>127)");
            return 1;
        }
        bufferOut[length++] = static_cast<char>(byte);
        bufferOut[length] = 0;
    }
    return 1;
}

int32_t TextDataFileReader::ReadQuoted(String* textOut)
{
    if (OpenQuote() != 0)
        return 1; // the old text stays
    if (!inMemory)
        return ReadQuotedFromStream(textOut);

    const char* text = reinterpret_cast<const char*>(data.get()) + position;
    const size_t left = static_cast<size_t>(size - position);
    const void* close = left > 0 ? std::memchr(text, '"', left) : nullptr;
    const int32_t length =
        close ? static_cast<int32_t>(static_cast<const char*>(close) - text) : size - position;
    textOut->Assign(text, length);
    position += close ? length + 1 : length;
    if (!close)
        atEnd = 1;
    return close ? 0 : 1;
}

int32_t TextDataFileReader::ReadQuotedFromStream(String* textOut)
{
    String room;
    int32_t capacity = kTokenSize;
    char* text = room.GetBuffer(capacity);
    int32_t length = 0;
    uint8_t byte = 0;
    bool closed = false;
    while (!closed && NextByte(&byte)) {
        closed = byte == '"';
        if (closed)
            break;
        if (length == capacity) {
            capacity = capacity > INT32_MAX / 2 ? INT32_MAX - 1 : capacity * 2;
            text = room.GetBuffer(capacity);
        }
        text[length++] = static_cast<char>(byte);
    }
    textOut->Assign(text, length);
    return closed ? 0 : 1;
}

int32_t TextDataFileReader::ReadInt(int32_t* valueOut)
{
    SkipSpace();
    TokenView token;
    const int32_t result = ScanNumberText(&token);
    *valueOut = result == 0 ? ToInt32(ParseDouble(token.text, token.text + token.length)) : 0;
    return result;
}

int32_t TextDataFileReader::ReadFloat(float* valueOut)
{
    SkipSpace();
    TokenView token;
    const int32_t result = ScanWord(&token);
    *valueOut =
        result == 0 ? static_cast<float>(ParseDouble(token.text, token.text + token.length)) : 0.0f;
    return result;
}

int32_t TextDataFileReader::ReadVector(float (&valuesOut)[3])
{
    int32_t result = 0;
    for (int i = 0; i < 3; ++i) {
        result |= ReadFloat(&valuesOut[i]);
        if (i == 2)
            break;
        SkipSpace();
        if (PeekChar() == ',')
            ReadChar();
    }
    return result;
}
