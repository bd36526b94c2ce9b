#include "qsa/QSA_SceneText.h"

QSA_Token QSA_SceneText::NextToken()
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
            return ScanWord(&word) == 0 ? ClassifyKeyword(word.text, word.length)
                                        : QSA_Token::Unknown;
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
