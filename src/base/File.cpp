#include "base/File.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <new>
#include <sys/stat.h>
#include <utility>

#include "base/FormatText.h"
#include "platform/HostStream.h"
#include "platform/OpenFileStream.h"

int32_t gOpenHandlesCount = 0;

File::File()
{
    SetClassName("File");
}

File::~File()
{
    Close();
}

void File::Error(const char* format, ...)
{
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(message, sizeof message, format, arguments);
    va_end(arguments);

    ErrorClass::Error("%s: %s", fileName.c_str(), message);
}

bool File::Open(const char* name, bool readOnly, bool loadWhole, bool reportFailure)
{
    Close();
    if (loadWhole && !readOnly) {
        Error("LoadWholeFile requires ReadOnly");
        return false;
    }
    fileName.Assign(name);
    int64_t knownSize = -1;
    stream.reset(OpenFileStream(fileName.c_str(), readOnly ? "rb" : "r+b", &knownSize));
    if (!stream)
        return OpenFailed("Open() failed: %s, file:'%s'", errno, fileName, reportFailure);

    ++gOpenHandlesCount;
    canRead = 1;
    canWrite = readOnly ? 0 : 1;
    fileSize = knownSize >= 0 && knownSize <= INT32_MAX ? static_cast<int32_t>(knownSize)
                                                        : MeasureOpened();
    if (fileSize < 0) {
        fileSize = 0;
        return OpenFailed("Open() failed: %s, file:'%s'", EFBIG, fileName, reportFailure);
    }
    if (loadWhole)
        LoadIntoMemory();
    position = 0;
    return true;
}

/// Where the host does not tell the size. The stream is at its start afterwards.
int32_t File::MeasureOpened()
{
    const int seekResult = std::fseek(stream.get(), 0, SEEK_END);
    if (seekResult != 0)
        Error("fseek failed: %i", seekResult);
    return MeasureStream(stream.get());
}

bool File::Create(const char* name, bool writeOnly, bool reportFailure)
{
    Close();
    String newName;
    newName.Assign(name);
    stream.reset(OpenFileStream(newName.c_str(), writeOnly ? "wb" : "w+b"));
    if (!stream)
        return OpenFailed("Create() failed: %s, file:'%s'", errno, newName, reportFailure);

    ++gOpenHandlesCount;
    fileName = std::move(newName);
    canRead = writeOnly ? 0 : 1;
    canWrite = 1;
    position = 0;
    return true;
}

bool File::OpenFailed(const char* format, int errorNumber, const String& name, bool reportFailure)
{
    Close();
    if (reportFailure)
        Warning(format, std::strerror(errorNumber), name.c_str());
    return false;
}

bool File::Close()
{
    bool closed = BringGathered();
    if (FILE* closing = stream.release()) {
        closed = CloseStream(closing) && closed;
        if (!closed)
            Warning("Could not close file: '%s' - %s", fileName.c_str(), std::strerror(errno));
        else if (gOpenHandlesCount > 0)
            --gOpenHandlesCount;
        else
            Warning("Invalid m_OpenHandlesCount !");
    }
    memoryData.reset();
    canRead = 0;
    canWrite = 0;
    inMemory = 0;
    lastTransfer = Transfer::none;
    aheadAt = aheadEnd = room = 0;
    return closed;
}

bool File::Flush()
{
    if (!canWrite) {
        Error("File is not writeable");
        return false;
    }
    if (BringGathered() && std::fflush(stream.get()) == 0)
        return true;
    TakeStreamPosition();
    Error("Error writing to file");
    return false;
}

void File::LoadIntoMemory()
{
    inMemory = 1;
    memoryData.reset(new (std::nothrow) uint8_t[static_cast<size_t>(fileSize)]);
    const size_t wanted = static_cast<size_t>(fileSize);
    if (!memoryData || ReadStream(stream.get(), memoryData.get(), wanted) != wanted) {
        fileSize = 0;
        Error("Error reading from file");
    }
}

void File::Seek(int32_t newPosition)
{
    if (!inMemory) {
        aheadAt = aheadEnd = 0;
        if (!BringGathered()) {
            Error("Error writing to file");
            return;
        }
        const int result = stream ? std::fseek(stream.get(), newPosition, SEEK_SET) : -1;
        lastTransfer = Transfer::none;
        if (result != 0)
            Error("fseek failed: %i", result);
    }
    position = newPosition; // also after a failed seek that does not throw
}

int32_t File::GetBytesLeft() const
{
    return position >= 0 && position < fileSize ? fileSize - position : 0;
}

int32_t File::GetFileTime() const
{
    if (!stream)
        return -1;
    // Queried from the stream, not from the name, which may mean another file by now.
    struct stat info;
    if (fstat(fileno(stream.get()), &info) != 0)
        return -1;
    return static_cast<int32_t>(static_cast<uint32_t>(info.st_mtime));
}

/// A read that bypasses the window.
bool File::ReadOn(void* bufferOut, int32_t size)
{
    if (!canRead) {
        Error("File is not readable");
        return false;
    }
    if (size == 0)
        return true;
    if (inMemory)
        return ReadFromMemory(bufferOut, size);

    PrepareTransfer(Transfer::read);
    if (size < 0 || !ReadFromStream(bufferOut, size)) {
        aheadAt = aheadEnd = 0;
        TakeStreamPosition();
        Error("Error reading from file");
        return false;
    }
    position += size;
    return true;
}

bool File::ReadFromStream(void* bufferOut, int32_t size)
{
    uint8_t* at = static_cast<uint8_t*>(bufferOut);
    size_t left = static_cast<size_t>(size);
    if (canWrite) // reading ahead would get in the way of a write
        return ReadStream(stream.get(), at, left) == left;

    const size_t ahead = static_cast<size_t>(aheadEnd - aheadAt);
    if (ahead > 0)
        std::memcpy(at, window.get() + aheadAt, ahead);
    at += ahead;
    left -= ahead;
    aheadAt = aheadEnd = 0;
    if (left >= static_cast<size_t>(kWindowSize))
        return ReadStream(stream.get(), at, left) == left;
    if (!window)
        window.reset(new uint8_t[kWindowSize]);
    aheadEnd = static_cast<int32_t>(ReadStream(stream.get(), window.get(), kWindowSize));
    if (left > static_cast<size_t>(aheadEnd))
        return false;
    std::memcpy(at, window.get(), left);
    aheadAt = static_cast<int32_t>(left);
    return true;
}

bool File::ReadFromMemory(void* bufferOut, int32_t size)
{
    if (size < 0 || size > GetBytesLeft()) {
        Error("Error reading from file");
        return false;
    }
    std::memcpy(bufferOut, memoryData.get() + position, static_cast<size_t>(size));
    position += size;
    return true;
}

bool File::ReadString(String* textOut)
{
    textOut->Clear();
    int32_t size = 0;
    if (!ReadInt32(&size))
        return false;
    if (size < 1)
        return true;
    if (size > GetBytesLeft()) {
        Error("String of %i bytes exceeds the %i bytes left in file", size, GetBytesLeft());
        return false;
    }
    textOut->Allocate(size);
    if (Read(textOut->data.get(), size))
        return true;
    textOut->Clear();
    return false;
}

/// A write that bypasses the window.
bool File::WriteOn(const void* buffer, int32_t size)
{
    if (!canWrite) {
        Error("File is not writeable");
        return false;
    }
    if (size == 0)
        return true;
    PrepareTransfer(Transfer::write);
    // The position must stay within int32, as every offset that is stored in a file does.
    if (size < 0 || size > INT32_MAX - position || !WriteToStream(buffer, size)) {
        TakeStreamPosition();
        if (fileSize < position)
            fileSize = position;
        Error("Error writing to file");
        return false;
    }
    Advance(size);
    return true;
}

bool File::WriteToStream(const void* buffer, int32_t size)
{
    if (!BringGathered())
        return false;
    if (!canRead && !window)
        window.reset(new uint8_t[kWindowSize]);
    room = canRead ? 0 : kWindowSize;
    if (size >= room)
        return std::fwrite(buffer, static_cast<size_t>(size), 1, stream.get()) == 1;
    std::memcpy(window.get(), buffer, static_cast<size_t>(size));
    gathered = size;
    return true;
}

/// Writes the collected bytes to the stream. Bytes that it refuses are lost.
bool File::BringGathered()
{
    const size_t size = static_cast<size_t>(gathered);
    gathered = 0;
    return size == 0 || std::fwrite(window.get(), size, 1, stream.get()) == 1;
}

bool File::WriteString(const String& text)
{
    if (!WriteInt32(text.length))
        return false;
    return text.length < 1 || Write(text.data.get(), text.length);
}

void File::PrepareTransfer(Transfer next)
{
    // A stream open for both needs a seek between reading and writing.
    if (lastTransfer != Transfer::none && lastTransfer != next)
        std::fseek(stream.get(), 0, SEEK_CUR);
    lastTransfer = next;
}

void File::TakeStreamPosition()
{
    const long at = std::ftell(stream.get());
    if (at >= 0)
        position = static_cast<int32_t>(std::min<int64_t>(at, INT32_MAX));
}
