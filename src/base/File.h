#pragma once

#include <cstdint>
#include <memory>

#include "base/ErrorClass.h"
#include "base/FileStream.h"
#include "base/String.h"

extern int32_t gOpenHandlesCount; ///< files that are open in the process

/// Binary file: raw little-endian numbers without padding. Failures of transfer are `Error`s that
/// bear the file's name; a file that cannot be opened is a `Warning`. The `false` results behind an
/// `Error` are only reached with `throwOnError` 0.
class File : public ErrorClass {
public:
    File();
    ~File() override;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Puts "name: " in front of the message.
    [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) override;

    /// Closes what is open and opens an existing file, at its start. `loadWhole` takes it into
    /// memory and needs `readOnly`. False with a `Warning` (if `reportFailure`) when it cannot be
    /// opened or is larger than int32. A null name is the empty one.
    bool Open(const char* name, bool readOnly, bool loadWhole, bool reportFailure);
    /// Closes what is open and makes an empty file; not `writeOnly` allows reading back.
    /// QUIRK: the size of an earlier file of this object stays as the least size.
    bool Create(const char* name, bool writeOnly, bool reportFailure);
    /// Name, size and position stay readable afterwards.
    void Close();
    bool IsOpen() const { return stream != nullptr; }

    /// Bytes from the start of the file. In memory any value is taken; the next read checks it.
    void Seek(int32_t newPosition);
    int32_t GetPosition() const { return position; }
    int32_t GetSize() const { return fileSize; }
    /// Bytes from the position to the end; 0 when the position lies outside.
    int32_t GetBytesLeft() const;
    String GetFileName() const { return fileName; }
    /// Modification time in seconds since 1970, cut to 32 bits; -1 when closed.
    int32_t GetFileTime() const;

    /// Reads exactly `size` bytes. Fewer left, or a negative size, is the `Error`.
    bool Read(void* bufferOut, int32_t size);
    bool ReadInt32(int32_t* valueOut) { return Read(valueOut, 4); }
    bool ReadInt32(uint32_t* valueOut) { return Read(valueOut, 4); }
    bool ReadFloat32(float* valueOut) { return Read(valueOut, 4); }
    bool ReadInt16(int16_t* valueOut) { return Read(valueOut, 2); }
    bool ReadInt16(uint16_t* valueOut) { return Read(valueOut, 2); }
    bool ReadInt8(int8_t* valueOut) { return Read(valueOut, 1); }
    bool ReadInt8(uint8_t* valueOut) { return Read(valueOut, 1); }
    /// int32 length and that many bytes. A length below 1 gives the empty string; one above the
    /// bytes that are left is an `Error` before memory is taken.
    bool ReadString(String* textOut);

    bool Write(const void* buffer, int32_t size);
    bool WriteInt32(int32_t value) { return Write(&value, 4); }
    bool WriteFloat32(float value) { return Write(&value, 4); }
    bool WriteInt16(int16_t value) { return Write(&value, 2); }
    bool WriteInt8(int8_t value) { return Write(&value, 1); }
    /// int32 length and the `length` bytes of the string, without a terminator.
    bool WriteString(const String& text);

private:
    friend class FileTestAccess;

    enum class Transfer { none, read, write };

    bool OpenFailed(const char* format, int errorNumber, const String& name, bool reportFailure);
    void LoadIntoMemory();
    bool ReadFromMemory(void* bufferOut, int32_t size);
    void PrepareTransfer(Transfer next);
    void TakeStreamPosition();

    FileStream stream; ///< owned; null when closed
    int32_t canRead = 0;
    int32_t canWrite = 0;
    String fileName;                       ///< of the last file opened or created
    int32_t fileSize = 0;                  ///< bytes, kept up to date by writes
    int32_t position = 0;                  ///< bytes from the start
    int32_t inMemory = 0;                  ///< 1: the whole file lies in `memoryData`
    std::unique_ptr<uint8_t[]> memoryData; ///< owned; `fileSize` bytes, or null
    Transfer lastTransfer = Transfer::none;
};
