#include <cstring>

#include "qsa/QSA_SceneText.h"

QSA_Token QSA_SceneText::NextToken()
{
    QSA_Token token;
    if (!TakeGuessed(&token))
        token = FindToken();
    constexpr uint32_t kSpread = 0x9E3779B1; // the high bits depend on all bits of the tokens
    const auto both = static_cast<uint32_t>(lastToken) * 31 + static_cast<uint32_t>(token);
    guessPlace = both * kSpread >> (32 - kGuessBits);
    lastToken = token;
    return token;
}

/// Takes what follows white space alone: the end of the block, or the keyword that is expected here.
bool QSA_SceneText::TakeGuessed(QSA_Token* tokenOut)
{
    if (position >= size)
        return false;
    const uint8_t* const end = data.get() + size;
    const uint8_t* at = data.get() + position;
    while (*at <= ' ')
        ++at;
    const Guess& guess = guesses[guessPlace];
    if (*at == '}' && at < end) {
        *tokenOut = QSA_Token::BlockEnd;
        ++at;
    } else if (guess.length > 0 && end - at > guess.length &&
               std::memcmp(at, guess.word, static_cast<size_t>(guess.length)) == 0 &&
               QSA_TextCursor::EndsWord(at[guess.length])) {
        *tokenOut = guess.token;
        at += guess.length;
    } else {
        return false;
    }
    position = static_cast<int32_t>(at - data.get());
    return true;
}

void QSA_SceneText::Learn(const TokenView& word, QSA_Token token)
{
    if (word.length < 2 || word.length >= Guess::kMostBytes)
        return;
    Guess& guess = guesses[guessPlace];
    guess.word[0] = '*';
    std::memcpy(guess.word + 1, word.text, static_cast<size_t>(word.length));
    guess.length = word.length + 1;
    guess.token = token;
}

QSA_Token QSA_SceneText::FindToken()
{
    constexpr int32_t kReach = 256; // easily holds a keyword and its delimiter
    int32_t depth = 0;
    while (Reach(1)) {
        QSA_TextCursor cursor = Cursor();
        cursor.SkipToStructure();
        if (cursor.at >= cursor.end) {
            position = size;
            continue;
        }
        const uint8_t mark = *cursor.at++;
        MoveTo(cursor);
        if (mark == '{') {
            ++depth;
        } else if (mark == '}') {
            if (depth == 0)
                return QSA_Token::BlockEnd;
            --depth;
        } else if (depth == 0) {
            Reach(kReach);
            TokenView word;
            if (ScanWord(&word) != 0)
                return QSA_Token::Unknown;
            const QSA_Token token = ClassifyKeyword(word.text, word.length);
            Learn(word, token);
            return token;
        }
    }
    atEnd = 1;
    return QSA_Token::EndOfFile;
}

QSA_Token QSA_SceneText::NextToken(QSA_TextCursor& cursor)
{
    MoveTo(cursor);
    const QSA_Token token = NextToken();
    cursor = Cursor();
    return token;
}

void QSA_SceneText::ReadVersion()
{
    int32_t version = 0;
    ReadInt(&version);
    fileMajor = static_cast<uint8_t>(version / 100);
    fileMinor = static_cast<uint8_t>(version % 100);
}

bool QSA_SceneText::FileVersionAtLeast(int32_t major, int32_t minor) const
{
    return major * 256 + minor <= fileMajor * 256 + fileMinor;
}
