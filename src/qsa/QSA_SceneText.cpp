#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/HeapPages.h"
#include "platform/HostStream.h"
#include "platform/OpenFileStream.h"
#include "qsa/QSA_SceneText.h"

namespace {

/// White space aside, no value or word is longer: the longest has 127 bytes and a terminator.
constexpr int32_t kTokenReach = 256;

/// From here on a scene is so large that its memory is prepared while it is read.
constexpr int32_t kLargeText = 256 * 1024;

} // namespace

QSA_SceneText::QSA_SceneText()
{
    SetClassName("QSA_SceneText");
}

QSA_SceneText::~QSA_SceneText() = default;

void QSA_SceneText::Open(const char* path)
{
    Close();
    int64_t end = -1;
    textFile.reset(OpenFileStream(path, "rb", &end));
    if (!textFile)
        Error("Can not open file %s", path);
    if (end < 0) { // the host does not know, and its stream has a buffer
        std::setvbuf(textFile.get(), nullptr, _IONBF, 0);
        std::fseek(textFile.get(), 0, SEEK_END);
        end = std::ftell(textFile.get());
        std::rewind(textFile.get());
    }
    if (end < 0 || end > INT32_MAX - kTextPadding)
        Error("Error reading from file %s at %i", path, 0);

    textSize = static_cast<int32_t>(end);
    textStart = 0;
    fileMajor = 1;
    fileMinor = 0;
    GrowWindow(std::min(textSize, windowBytes));
    Reach(1);
}

void QSA_SceneText::Close()
{
    FreeData();
    textFile.reset();
    windowCapacity = 0;
}

/// Makes room for `capacity` bytes in the window and keeps its text.
void QSA_SceneText::GrowWindow(int32_t capacity)
{
    const size_t room = static_cast<size_t>(capacity) + kTextPadding;
    std::unique_ptr<uint8_t[]> larger(new uint8_t[room]);
    const int32_t kept = data ? size : 0;
    if (kept > 0)
        std::memcpy(larger.get(), data.get(), static_cast<size_t>(kept));
    std::memset(larger.get() + kept, kTextSentinel, kTextPadding);
    data = std::move(larger);
    size = kept;
    inMemory = 1;
    windowCapacity = capacity;
}

/// Makes sure that the window holds at least `bytes` bytes after the position, or all that the file
/// has left. False if there is nothing left. Invalidates cursors.
bool QSA_SceneText::Reach(int32_t bytes)
{
    const int32_t left = size - position;
    const int32_t unread = textSize - textStart - size;
    if (left >= bytes || unread == 0)
        return left > 0;

    if (textStart + position >= kLargeText)
        MakeHeapPages();
    std::memmove(data.get(), data.get() + position, static_cast<size_t>(left));
    textStart += position;
    position = 0;
    size = left;
    if (windowCapacity < bytes)
        GrowWindow(std::min(std::max(bytes, kTokenReach), left + unread));

    const int32_t wanted = std::min(windowCapacity - left, unread);
    const size_t got = ReadStream(textFile.get(), data.get() + left, static_cast<size_t>(wanted));
    size = left + static_cast<int32_t>(got);
    std::memset(data.get() + size, kTextSentinel, kTextPadding);
    if (static_cast<int32_t>(got) < wanted)
        Error("Error reading from file %s at %i", fileName, textStart + size);
    return size > 0;
}

int32_t QSA_SceneText::SkipSpace()
{
    while (Reach(1)) {
        if (TextDataFileReader::SkipSpace() == 0)
            return 0;
    }
    atEnd = 1;
    return 1;
}

int32_t QSA_SceneText::SkipTo(char c)
{
    // QUIRK: the message names the last byte read and not the one that was missing; logs of broken
    // files are compared by these texts.
    char last = c;
    while (Reach(1)) {
        const uint8_t* const first = data.get() + position;
        const size_t left = static_cast<size_t>(size - position);
        if (const void* found = std::memchr(first, c, left)) {
            position += static_cast<int32_t>(static_cast<const uint8_t*>(found) - first) + 1;
            return 0;
        }
        last = static_cast<char>(first[left - 1]);
        position = size;
    }
    atEnd = 1;
    Error("'%c' not found", last);
    return 1;
}

uint8_t QSA_SceneText::PeekBehindSpace()
{
    return SkipSpace() == 0 ? data[static_cast<size_t>(position)] : uint8_t{0};
}

int32_t QSA_SceneText::ReadWord(TokenBuffer& bufferOut)
{
    Reach(kTokenReach);
    return TextDataFileReader::ReadWord(bufferOut);
}

int32_t QSA_SceneText::ReadQuoted(TokenBuffer& bufferOut)
{
    SkipSpace();
    Reach(kTokenReach);
    return TextDataFileReader::ReadQuoted(bufferOut);
}

int32_t QSA_SceneText::ReadQuoted(String* textOut)
{
    SkipSpace();
    // A long text is read into the window whole, however long it is.
    for (int32_t reach = kTokenReach; Reach(reach);) {
        const int32_t held = size - position;
        const uint8_t* const first = data.get() + position;
        const bool isClosed = std::memchr(first + 1, '"', static_cast<size_t>(held - 1)) != nullptr;
        if (isClosed || *first != '"' || held == BytesLeft())
            break;
        reach = held + std::min(held, BytesLeft() - held);
    }
    return TextDataFileReader::ReadQuoted(textOut);
}

int32_t QSA_SceneText::ReadInt(int32_t* valueOut)
{
    if (QSA_TextCursor cursor = Cursor(); data && cursor.TakeInt(valueOut)) {
        MoveTo(cursor);
        return 0;
    }
    SkipSpace();
    Reach(kTokenReach);
    return TextDataFileReader::ReadInt(valueOut);
}

int32_t QSA_SceneText::ReadFloat(float* valueOut)
{
    if (QSA_TextCursor cursor = Cursor(); data && cursor.TakeFloat(valueOut)) {
        MoveTo(cursor);
        return 0;
    }
    SkipSpace();
    Reach(kTokenReach);
    return TextDataFileReader::ReadFloat(valueOut);
}

int32_t QSA_SceneText::ReadVector(float (&valuesOut)[3])
{
    if (QSA_TextCursor cursor = Cursor(); data && TakeRow(cursor, valuesOut)) {
        MoveTo(cursor);
        return 0;
    }
    int32_t result = ReadFloat(&valuesOut[0]);
    for (size_t i = 1; i < 3; ++i) {
        if (PeekBehindSpace() == ',')
            ++position;
        result |= ReadFloat(&valuesOut[i]);
    }
    return result;
}

void QSA_SceneText::ReadVector(D3DXVECTOR3* vectorOut)
{
    float values[3];
    ReadVector(values);
    *vectorOut = {values[0], values[1], values[2]};
}

void QSA_SceneText::ReadColor(D3DCOLORVALUE* colorOut)
{
    float rgb[3];
    ReadVector(rgb);
    *colorOut = {rgb[0], rgb[1], rgb[2], 1.0f};
}

// ---- For loops over lists, where the fast form did not apply

void QSA_SceneText::SkipToSlowly(QSA_TextCursor& cursor, char c)
{
    MoveTo(cursor);
    SkipTo(c);
    cursor = Cursor();
}

uint8_t QSA_SceneText::PeekSlowly(QSA_TextCursor& cursor)
{
    MoveTo(cursor);
    const uint8_t next = PeekBehindSpace();
    cursor = Cursor();
    return next;
}

void QSA_SceneText::ReadIntSlowly(QSA_TextCursor& cursor, int32_t* valueOut)
{
    MoveTo(cursor);
    ReadInt(valueOut);
    cursor = Cursor();
}

void QSA_SceneText::ReadFloatSlowly(QSA_TextCursor& cursor, float* valueOut)
{
    MoveTo(cursor);
    ReadFloat(valueOut);
    cursor = Cursor();
}
