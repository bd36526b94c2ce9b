#include "base/String.h"

#include <cstdarg>
#include <cstring>
#include <utility>

#include "base/Ascii.h"
#include "base/FormatText.h"
#include "base/ParseNumber.h"

static constexpr int32_t kFormatLimit = 4095;

static int32_t LengthOf(const char* text)
{
    const size_t length = text ? std::strlen(text) : 0;
    return length > INT32_MAX - 1 ? INT32_MAX - 1 : static_cast<int32_t>(length);
}

/// Zeroed, so that any part not yet written reads as the end of the text.
static std::unique_ptr<char[]> MakeBuffer(int32_t size)
{
    return std::make_unique<char[]>(static_cast<size_t>(size) + 1);
}

String::String(const char* text)
{
    Assign(text);
}

String::String(const String& other)
{
    Assign(other);
}

String::String(String&& other) noexcept
    : data(std::move(other.data)),
      length(std::exchange(other.length, 0))
{}

String& String::operator=(const String& other)
{
    Assign(other);
    return *this;
}

String& String::operator=(String&& other) noexcept
{
    if (this != &other) {
        data = std::move(other.data);
        length = std::exchange(other.length, 0);
    }
    return *this;
}

void String::Clear()
{
    data.reset();
    length = 0;
}

void String::Allocate(int32_t size)
{
    Clear();
    if (size < 0)
        return;
    data = MakeBuffer(size);
    length = size;
}

void String::Assign(const String& source)
{
    if (&source != this)
        Assign(source.data.get(), source.length);
}

void String::Assign(const char* text)
{
    if (text && text == data.get())
        return;
    Assign(text, LengthOf(text));
}

void String::Assign(const char* bytes, int32_t size)
{
    if (!bytes || size < 1) {
        Clear();
        return;
    }
    // The old buffer lives until the copy is done: the source may lie inside it.
    auto copy = MakeBuffer(size);
    std::memcpy(copy.get(), bytes, static_cast<size_t>(size));
    data = std::move(copy);
    length = size;
}

int32_t String::TextLength() const
{
    return LengthOf(data.get());
}

char* String::GetBuffer(int32_t size)
{
    if (!data) {
        if (size >= 0)
            Allocate(size);
    } else if (size > length) {
        auto larger = MakeBuffer(size);
        std::memcpy(larger.get(), data.get(), static_cast<size_t>(length));
        data = std::move(larger);
        length = size;
    }
    return data.get();
}

bool String::EndsWith(const char* text) const
{
    const int32_t tail = LengthOf(text);
    const int32_t total = TextLength();
    return tail <= total && (tail == 0 || CompareNoCase(c_str() + (total - tail), text) == 0);
}

int32_t String::Find(const char* text) const
{
    if (!text || IsEmpty())
        return -1;
    const int32_t wanted = LengthOf(text);
    const int32_t last = TextLength() - wanted;
    for (int32_t i = 0; i <= last; ++i) {
        if (CompareNoCase(c_str() + i, text, static_cast<size_t>(wanted)) == 0)
            return i;
    }
    return -1;
}

bool String::ParseFloats(float* valuesOut, int32_t count) const
{
    const char* piece = c_str();
    for (int32_t i = 0; i < count; ++i) {
        const char* comma = std::strchr(piece, ',');
        const char* end = comma ? comma : piece + std::strlen(piece);
        if (end == piece)
            return false;
        valuesOut[i] = static_cast<float>(ParseDouble(piece, end));
        piece = comma ? comma + 1 : end;
    }
    return true;
}

void String::Format(const char* format, ...)
{
    // Formatted into a buffer first: the arguments may point into this string.
    char text[kFormatLimit + 1];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(text, sizeof text, format, arguments);
    va_end(arguments);
    Clear();
    Assign(text);
}

void String::Append(const char* text)
{
    const int32_t added = LengthOf(text);
    if (added == 0)
        return;
    const int32_t old = TextLength();
    auto joined = MakeBuffer(old + added);
    std::memcpy(joined.get(), c_str(), static_cast<size_t>(old));
    std::memcpy(joined.get() + old, text, static_cast<size_t>(added));
    data = std::move(joined);
    length = old + added;
}
