#pragma once

#include <cstdint>

#include <d3dx9.h>

#include "base/TextDataFileReader.h"
#include "qsa/QSA_Keywords.h"
#include "qsa/QSA_NumberRow.h"
#include "qsa/QSA_TextCursor.h"

/// The text of a scene file: values, and keywords as tokens. A window moves over the file. The base
/// class takes the window for the whole file, so each read here first makes sure that it reaches
/// far enough. Results are the same as with the whole file in memory.
class QSA_SceneText : public TextDataFileReader {
public:
    QSA_SceneText();
    ~QSA_SceneText() override;

    /// Bytes of text held at a time, from the next `Open` on. Any number works: the window grows to
    /// what a single value needs.
    void SetWindow(int32_t bytes) { windowBytes = bytes; }
    /// Opens the file and reads its first bytes. A missing or unreadable file is an `Error`.
    /// Messages name the file set by `SetFileName`.
    void Open(const char* path);
    /// Closes the file and frees the window.
    void Close();
    bool IsOpen() const { return textFile != nullptr; }
    const char* FileName() const { return fileName; }
    int32_t TextSize() const { return textSize; } ///< bytes of the file opened last
    int32_t TextPosition() const { return textStart + position; }
    int32_t BytesLeft() const { return textSize - TextPosition(); }

    // --- values, as in the base
    int32_t SkipSpace();
    int32_t SkipTo(char c);
    /// The first byte after white space, without consuming it, or 0 at the end of the file.
    uint8_t PeekBehindSpace();
    int32_t ReadWord(TokenBuffer& bufferOut);
    int32_t ReadQuoted(TokenBuffer& bufferOut);
    int32_t ReadQuoted(String* textOut);
    int32_t ReadInt(int32_t* valueOut);
    int32_t ReadFloat(float* valueOut);
    int32_t ReadVector(float (&valuesOut)[3]);
    void ReadVector(D3DXVECTOR3* vectorOut);
    /// Red, green and blue; alpha becomes 1.
    void ReadColor(D3DCOLORVALUE* colorOut);

    // --- the same for loops over lists, which keep their position in a cursor. All other reads
    // move the window: call `MoveTo` with the cursor before them and take a new cursor after them.
    QSA_TextCursor Cursor() const { return {data.get() + position, data.get() + size}; }
    void MoveTo(const QSA_TextCursor& cursor)
    {
        position = static_cast<int32_t>(cursor.at - data.get());
    }
    void SkipTo(QSA_TextCursor& cursor, char c)
    {
        if (!cursor.TakeThrough(c))
            SkipToSlowly(cursor, c);
    }
    uint8_t PeekBehindSpace(QSA_TextCursor& cursor)
    {
        cursor.SkipSpace();
        return cursor.at < cursor.end ? *cursor.at : PeekSlowly(cursor);
    }
    void ReadInt(QSA_TextCursor& cursor, int32_t* valueOut)
    {
        if (!cursor.TakeInt(valueOut))
            ReadIntSlowly(cursor, valueOut);
    }
    void ReadFloat(QSA_TextCursor& cursor, float* valueOut)
    {
        if (!cursor.TakeFloat(valueOut))
            ReadFloatSlowly(cursor, valueOut);
    }
    void ReadVector(QSA_TextCursor& cursor, float (&valuesOut)[3])
    {
        if (TakeRow(cursor, valuesOut))
            return;
        ReadFloat(cursor, &valuesOut[0]);
        for (size_t i = 1; i < 3; ++i) {
            if (PeekBehindSpace(cursor) == ',')
                ++cursor.at;
            ReadFloat(cursor, &valuesOut[i]);
        }
    }
    void ReadVector(QSA_TextCursor& cursor, D3DXVECTOR3* vectorOut)
    {
        float values[3];
        ReadVector(cursor, values);
        *vectorOut = {values[0], values[1], values[2]};
    }

    /// A time and a vector.
    void ReadTimed(QSA_TextCursor& cursor, float* timeOut, D3DXVECTOR3* vectorOut)
    {
        float values[4];
        if (TakeRow(cursor, values)) {
            *timeOut = values[0];
            *vectorOut = {values[1], values[2], values[3]};
            return;
        }
        ReadFloat(cursor, timeOut);
        ReadVector(cursor, vectorOut);
    }

    // --- tokens: QSA_SceneTextTokens.cpp
    /// The next keyword, or the brace that closes the current block. Blocks of keywords that the
    /// caller does not handle are skipped.
    QSA_Token NextToken();
    QSA_Token NextToken(QSA_TextCursor& cursor);
    /// Passes the tokens of the current block to `take(token)` until the block ends or `take`
    /// returns something other than 0. Returns 0 at the end of the block, otherwise 1.
    template <class Take>
    int32_t ParseBlock(Take take);

    // --- the version of the format, which the text gives once; 1.0 until then
    /// Called at the version keyword.
    void ReadVersion();
    int32_t FileMajor() const { return fileMajor; }
    bool FileVersionAtLeast(int32_t major, int32_t minor) const;

private:
    /// The keyword that came after two tokens the last time, with its star. Exporters write the same
    /// keywords in the same order for every object, so most are known without being looked up.
    struct Guess {
        static constexpr int32_t kMostBytes = 28;
        char word[kMostBytes] = {};
        int32_t length = 0; ///< 0: nothing came yet
        QSA_Token token = QSA_Token::Unknown;
    };
    static constexpr uint32_t kGuessBits = 7;
    static constexpr uint32_t kGuesses = 1 << kGuessBits;

    bool TakeGuessed(QSA_Token* tokenOut);
    QSA_Token FindToken();
    void Learn(const TokenView& word, QSA_Token token);
    bool Reach(int32_t bytes);
    void GrowWindow(int32_t capacity);
    void SkipToSlowly(QSA_TextCursor& cursor, char c);
    uint8_t PeekSlowly(QSA_TextCursor& cursor);
    void ReadIntSlowly(QSA_TextCursor& cursor, int32_t* valueOut);
    void ReadFloatSlowly(QSA_TextCursor& cursor, float* valueOut);

    FileStream textFile;        ///< owned; open while its text is being read
    int32_t textSize = 0;       ///< bytes of the file
    int32_t textStart = 0;      ///< where in the file the window begins
    int32_t windowCapacity = 0; ///< bytes of text that `data` has room for
    /// Default size of a window: with what is made of it, it fits the processor's cache, so text is
    /// read from there and not from memory.
    int32_t windowBytes = 64 * 1024;
    uint8_t fileMajor = 1;
    uint8_t fileMinor = 0;
    QSA_Token lastToken = QSA_Token::Unknown;
    uint32_t guessPlace = 0; ///< by the last two tokens
    Guess guesses[kGuesses]; ///< a wrong one costs only time
};

template <class Take>
int32_t QSA_SceneText::ParseBlock(Take take)
{
    for (;;) {
        const QSA_Token token = NextToken();
        if (token == QSA_Token::BlockEnd)
            return 0;
        if (token == QSA_Token::EndOfFile || take(token) != 0)
            return 1;
    }
}
