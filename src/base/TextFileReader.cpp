#include "base/TextFileReader.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "base/FileStream.h"
#include "base/FormatText.h"
#include "platform/HostStream.h"
#include "platform/OpenFileStream.h"

static constexpr int32_t kMaxLines = 65535;
static constexpr int32_t kMaxLineLength = 65535;

static bool IsLineEnd(char c)
{
    return c == '\r' || c == '\n';
}

/// Whether a byte directly after a line end is not part of the next line.
static bool IsSkippedControl(char c)
{
    return static_cast<unsigned char>(c) < 32 && c != '\t' && !IsLineEnd(c);
}

TextFileReader::TextFileReader()
{
    lineBuffer[0] = 0;
    CopyText(lastError, sizeof lastError, "No error");
}

TextFileReader::~TextFileReader() = default;

void TextFileReader::SetFileName(const char* name)
{
    CopyText(fileName, sizeof fileName, name);
}

void TextFileReader::ClearText()
{
    isLoaded = 0;
    fileSize = 0;
    lineCount = 0;
    lineStart.Free();
    lineLength.Free();
    fileData.Free();
}

void TextFileReader::SetLastError(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(lastError, sizeof lastError, format, arguments);
    va_end(arguments);
}

int32_t TextFileReader::ReadFile()
{
    ClearText();
    const FileStream stream(OpenFileStream(fileName, "rb"));
    if (!stream) {
        SetLastError("Can not open file %s, Code:%i", fileName, errno);
        return kTextFileCannotOpen;
    }
    const int32_t size = MeasureStream(stream.get());
    fileData = HeapArray<char>::Try(size);
    const size_t wanted = static_cast<size_t>(size);
    if (!fileData || ReadStream(stream.get(), fileData.Get(), wanted) != wanted) {
        SetLastError("Can not read from file %s", fileName);
        fileData.Free();
        return kTextFileCannotRead;
    }
    fileSize = size;
    return kTextFileOk;
}

void TextFileReader::SetContent(const void* bytes, int32_t size)
{
    ClearText();
    fileSize = size < 0 ? 0 : size;
    fileData = HeapArray<char>(fileSize);
    if (fileSize > 0)
        std::memcpy(fileData.Get(), bytes, static_cast<size_t>(fileSize));
}

int32_t TextFileReader::BuildLineIndex()
{
    const int32_t total = CountLines();
    if (total > kMaxLines) {
        SetLastError("File %s too big", fileName);
        return kTextFileTooManyLines;
    }
    lineStart = HeapArray<int32_t>(total);
    lineLength = HeapArray<int32_t>(total);
    int32_t at = 0;
    for (int32_t line = 0; line < total; ++line) {
        lineStart[line] = at;
        while (at < fileSize && !IsLineEnd(fileData[at]))
            ++at;
        lineLength[line] = at - lineStart[line];
        if (lineLength[line] > kMaxLineLength) {
            SetLastError("Line too long in file %s", fileName);
            return kTextFileLineTooLong;
        }
        at = SkipLineEnd(at);
        while (at < fileSize && IsSkippedControl(fileData[at]))
            ++at;
    }
    lineCount = total;
    return kTextFileOk;
}

int32_t TextFileReader::CountLines() const
{
    int32_t ends = 0;
    int32_t at = 0;
    while (at < fileSize && ends < kMaxLines) {
        const int32_t next = SkipLineEnd(at);
        ends += next > at ? 1 : 0;
        at = next > at ? next : at + 1;
    }
    return ends + 1;
}

/// The offset after the line end at `at`; `at` itself if there is none.
int32_t TextFileReader::SkipLineEnd(int32_t at) const
{
    if (at >= fileSize || !IsLineEnd(fileData[at]))
        return at;
    const bool isPair = fileData[at] == '\r' && at + 1 < fileSize && fileData[at + 1] == '\n';
    return at + (isPair ? 2 : 1);
}

const char* TextFileReader::GetLine(int32_t line)
{
    if (line < 0 || line >= lineCount) {
        SetLastError("Line #%i does not exist", line);
        return nullptr;
    }
    const int32_t length = lineLength[line];
    if (length >= static_cast<int32_t>(sizeof lineBuffer)) {
        SetLastError("Line #%i is too long:%i", line, length);
        return nullptr;
    }
    if (length > 0)
        std::memcpy(lineBuffer, fileData.Get() + lineStart[line], static_cast<size_t>(length));
    lineBuffer[length] = 0;
    return lineBuffer;
}
