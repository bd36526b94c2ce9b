#pragma once

#include <cstdint>
#include <memory>

#include "base/ErrorClass.h"
#include "base/FileStream.h"
#include "base/String.h"
#include "base/TextFileReader.h"

inline constexpr int32_t kTokenSize = 128; ///< of a word or short text, terminator included

/// Buffer of a word, a number or a short text; always ends in a NUL.
using TokenBuffer = char[kTokenSize];

/// Reads a text as a stream of characters, words, numbers and quoted strings, from memory or from a
/// stream. Results are 0 for success and 1 for the end of the file or nothing there. All messages
/// begin with the file's name.
class TextDataFileReader : public ErrorClass {
public:
    TextDataFileReader();
    ~TextDataFileReader() override;
    TextDataFileReader(const TextDataFileReader&) = delete;
    TextDataFileReader& operator=(const TextDataFileReader&) = delete;

    [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) override;
    [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...) override;

    /// The name in messages; cut at 255 bytes.
    void SetFileName(const char* name);
    /// From now on reads from `bytes`, from the start; takes ownership of them.
    void SetData(std::unique_ptr<uint8_t[]> bytes, int32_t sizeBytes);
    /// From now on reads from `newStream`, whose next byte is the first of `sizeBytes`.
    void SetStream(FileStream newStream, int32_t sizeBytes);
    /// Frees the data and closes the stream.
    void FreeData();

    /// Returns the number of bytes read, at most those left. If none are left, sets `atEnd`.
    int32_t ReadBytes(void* bufferOut, int32_t number);
    /// Moves the position, clamped to the file. 1, or 0 if it had to clamp.
    int32_t SeekRelative(int32_t delta);
    /// Reads up to and including the next `c`. The end of the file is an `Error`.
    /// QUIRK: its text names the last byte read, and `c` only if there was none.
    int32_t SkipTo(char c);
    /// Skips bytes below 33, taken as unsigned; 1 at the end of the file.
    int32_t SkipSpace();
    /// The next byte, or 0 at the end; `PeekChar` leaves it there.
    char PeekChar();
    char ReadChar();

    /// Reads digits, `-`, `+` and `.`; 1 if there are none. More than 127 are an `Error`.
    int32_t ReadNumberText(TokenBuffer& bufferOut);
    /// Reads up to a byte below 33, a brace, a double quote or a comma, which stays unread. Such a
    /// byte in first place is taken and is the word. 1 if nothing was left. More than 127 bytes are
    /// an `Error`.
    int32_t ReadWord(TokenBuffer& bufferOut);
    /// Reads a text in double quotes after optional white space. Any other first byte is skipped with
    /// a `Warning`, gives 1, and the old text stays; a text that is not closed gives 1. More than 127
    /// bytes are an `Error`.
    int32_t ReadQuoted(TokenBuffer& bufferOut);
    /// The same without a limit of length.
    int32_t ReadQuoted(String* textOut);
    /// Skips white space, reads a number and truncates it towards zero; 0 if there is none. Values
    /// outside int32 give the nearest end of its range. An exponent is not part of an integer.
    int32_t ReadInt(int32_t* valueOut);
    /// Skips white space and reads a word as a number, converted as double and rounded to float.
    int32_t ReadFloat(float* valueOut);
    /// Three floats, with an optional comma after each of the first two.
    int32_t ReadVector(float (&valuesOut)[3]);

protected:
    /// A token that lies in the file's memory or in a buffer; not ended by a NUL.
    struct TokenView {
        const char* text = nullptr;
        int32_t length = 0;
    };

    /// Reads a word or number text without copying it where the file lies in memory; the view lives
    /// until the next read. 1 if nothing was left.
    int32_t ScanWord(TokenView* tokenOut);
    int32_t ScanNumberText(TokenView* tokenOut);
    /// One byte; false at the end, with `atEnd` set.
    bool NextByte(uint8_t* byteOut)
    {
        if (inMemory && position < size) {
            *byteOut = data.get()[position++];
            return true;
        }
        return ReadBytes(byteOut, 1) == 1;
    }

    int32_t inMemory = 0;            ///< 1: the file lies in `data`
    int32_t atEnd = 0;               ///< 1 after a read at the end
    std::unique_ptr<uint8_t[]> data; ///< owned; `size` bytes when `inMemory`
    FileStream stream;               ///< owned; read otherwise
    int32_t size = 0;                ///< bytes of the file
    int32_t position = 0;            ///< bytes from the start
    char fileName[kFileNameSize] = "";

private:
    int32_t ScanRun(uint8_t endClass, TokenView* tokenOut);
    int32_t ScanRunOfStream(uint8_t endClass);
    int32_t OpenQuote();
    int32_t ReadQuotedFromStream(String* textOut);

    TokenBuffer scratch; ///< token of a stream, which has no memory image to point into
};
