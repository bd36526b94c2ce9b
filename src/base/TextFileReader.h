#pragma once

#include <cstdint>

#include "base/ErrorClass.h"
#include "base/HeapArray.h"

inline constexpr int32_t kFileNameSize = 256; ///< of the readers' file names, terminator included

/// Results of the text readers' loading operations.
inline constexpr int32_t kTextFileOk = 0;
inline constexpr int32_t kTextFileCannotOpen = 1;
inline constexpr int32_t kTextFileCannotRead = 2;
inline constexpr int32_t kTextFileTooManyLines = 3;
inline constexpr int32_t kTextFileLineTooLong = 4;

/// Reads a text file whole and gives its lines by number, counted from 0. Failures are codes with
/// their text in `GetLastError`; nothing is logged.
class TextFileReader : public ErrorClass {
public:
    TextFileReader();
    ~TextFileReader() override;

    /// The file that `ReadFile` loads; cut at 255 bytes.
    void SetFileName(const char* name);
    const char* GetFileName() const { return fileName; }
    /// Loads the file: one of the codes 0 to 2. A file larger than int32 cannot be read.
    int32_t ReadFile();
    /// Takes a copy of `size` bytes as the file's content instead.
    void SetContent(const void* bytes, int32_t size);
    /// Finds the lines: 0, or the codes 3 (more than 65535 lines) and 4 (a line above 65535 bytes).
    /// A line ends at CR, LF or CR LF. Control bytes other than tabs directly after a line end are not
    /// part of the next line.
    int32_t BuildLineIndex();

    /// Line `line` as a text that lives until the next call, or null with a text in `GetLastError`.
    const char* GetLine(int32_t line);
    int32_t GetLineCount() const { return lineCount; }
    /// Text of the last failure; "No error" at first.
    const char* GetLastError() const { return lastError; }
    bool IsLoaded() const { return isLoaded != 0; }

protected:
    /// Forgets file and lines.
    void ClearText();
    [[gnu::format(printf, 2, 3)]] void SetLastError(const char* format, ...);

    int32_t isLoaded = 0;          ///< 1 after a successful load
    int32_t fileSize = 0;          ///< bytes in `fileData`
    int32_t lineCount = 0;         ///< lines in the index
    HeapArray<int32_t> lineStart;  ///< owned; offset of each line in `fileData`
    HeapArray<int32_t> lineLength; ///< owned; bytes of each line
    char lineBuffer[65536];        ///< result of `GetLine`
    HeapArray<char> fileData;      ///< owned; the whole file
    char fileName[kFileNameSize] = "";
    char lastError[256];

private:
    int32_t CountLines() const;
    int32_t SkipLineEnd(int32_t at) const;
};
