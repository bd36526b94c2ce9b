#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

#include "base/ErrorClass.h"
#include "base/FileStream.h"
#include "base/String.h"
#include "platform/LittleEndian.h"

extern int32_t gOpenHandlesCount; ///< files that are open in the process

/// Binary file: raw little-endian numbers without padding. Failed reads and writes are `Error`s that
/// name the file; a file that cannot be opened is a `Warning`. The `false` results after an
/// `Error` are only reached with `throwOnError` 0.
class File : public ErrorClass {
public:
    File();
    ~File() override;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Puts "name: " before the message.
    [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) override;

    /// Closes the open file and opens an existing file, at its start. `loadWhole` loads it into
    /// memory and needs `readOnly`. False with a `Warning` (if `reportFailure`) if it cannot be
    /// opened or is larger than int32. A null name is the empty one.
    bool Open(const char* name, bool readOnly, bool loadWhole, bool reportFailure);
    /// Closes the open file and creates an empty file; without `writeOnly` it can be read back.
    /// QUIRK: the size of an earlier file of this object remains as the minimum size.
    bool Create(const char* name, bool writeOnly, bool reportFailure);
    /// Name, size and position stay readable afterwards. False with a `Warning` if the written bytes
    /// could not be stored.
    bool Close();
    /// Stores the written bytes in the file; a failure is the `Error` of a write.
    bool Flush();
    bool IsOpen() const { return stream != nullptr; }

    /// Bytes from the start of the file. In memory any value is accepted; the next read checks it.
    void Seek(int32_t newPosition);
    int32_t GetPosition() const { return position; }
    int32_t GetSize() const { return fileSize; }
    /// Bytes from the position to the end; 0 if the position is outside.
    int32_t GetBytesLeft() const;
    String GetFileName() const { return fileName; }
    /// Modification time in seconds since 1970, truncated to 32 bits; -1 if closed.
    int32_t GetFileTime() const;

    /// Reads exactly `size` bytes. If fewer are left, or the size is negative, it is an `Error`.
    bool Read(void* bufferOut, int32_t size)
    {
        if (size <= 0 || size > aheadEnd - aheadAt)
            return ReadOn(bufferOut, size);
        std::memcpy(bufferOut, window.get() + aheadAt, static_cast<size_t>(size));
        aheadAt += size;
        position += size;
        return true;
    }
    bool ReadInt32(int32_t* valueOut) { return ReadNumber(valueOut); }
    bool ReadInt32(uint32_t* valueOut) { return ReadNumber(valueOut); }
    bool ReadFloat32(float* valueOut) { return ReadNumber(valueOut); }
    bool ReadInt16(int16_t* valueOut) { return ReadNumber(valueOut); }
    bool ReadInt16(uint16_t* valueOut) { return ReadNumber(valueOut); }
    bool ReadInt8(int8_t* valueOut) { return Read(valueOut, 1); }
    bool ReadInt8(uint8_t* valueOut) { return Read(valueOut, 1); }
    /// int32 length and that many bytes. A length below 1 gives the empty string; one above the
    /// remaining bytes is an `Error` before memory is allocated.
    bool ReadString(String* textOut);

    /// Collected and stored in larger pieces, so a failure may show only at a later
    /// write, at `Flush` or at `Close`.
    bool Write(const void* buffer, int32_t size)
    {
        if (size <= 0 || size > room - gathered || size > INT32_MAX - position)
            return WriteOn(buffer, size);
        std::memcpy(window.get() + gathered, buffer, static_cast<size_t>(size));
        gathered += size;
        Advance(size);
        return true;
    }
    bool WriteInt32(int32_t value) { return WriteNumber(value); }
    bool WriteFloat32(float value) { return WriteNumber(value); }
    bool WriteInt16(int16_t value) { return WriteNumber(value); }
    bool WriteInt8(int8_t value) { return Write(&value, 1); }
    /// int32 length and the `length` bytes of the string, without a terminator.
    bool WriteString(const String& text);

private:
    enum class Transfer { none, read, write };

    template <class Number>
    bool ReadNumber(Number* valueOut)
    {
        if (!Read(valueOut, sizeof *valueOut))
            return false;
        ReorderWords(valueOut, sizeof *valueOut, 1);
        return true;
    }
    template <class Number>
    bool WriteNumber(Number value)
    {
        ReorderWords(&value, sizeof value, 1);
        return Write(&value, sizeof value);
    }
    bool OpenFailed(const char* format, int errorNumber, const String& name, bool reportFailure);
    int32_t MeasureOpened();
    void LoadIntoMemory();
    bool ReadOn(void* bufferOut, int32_t size);
    bool ReadFromStream(void* bufferOut, int32_t size);
    bool WriteOn(const void* buffer, int32_t size);
    bool WriteToStream(const void* buffer, int32_t size);
    bool BringGathered();
    void Advance(int32_t size)
    {
        position += size;
        if (fileSize < position)
            fileSize = position;
    }
    bool ReadFromMemory(void* bufferOut, int32_t size);
    void PrepareTransfer(Transfer next);
    void TakeStreamPosition();

    FileStream stream; ///< owned; null when closed
    int32_t canRead = 0;
    int32_t canWrite = 0;
    String fileName;                       ///< of the last file opened or created
    int32_t fileSize = 0;                  ///< bytes, kept up to date by writes
    int32_t position = 0;                  ///< bytes from the start
    int32_t inMemory = 0;                  ///< 1: the whole file is in `memoryData`
    std::unique_ptr<uint8_t[]> memoryData; ///< owned; `fileSize` bytes, or null
    Transfer lastTransfer = Transfer::none;

    // A stream that is only read or only written uses a window: a library call for each number would cost
    // more than the number.
    static constexpr int32_t kWindowSize = 65536;
    std::unique_ptr<uint8_t[]> window; ///< owned; made by the first transfer
    int32_t aheadAt = 0;               ///< of a reader: the next byte in the window
    int32_t aheadEnd = 0;
    int32_t gathered = 0; ///< of a writer: bytes in the window
    int32_t room = 0;     ///< size of a writer's window; 0 for others
};
