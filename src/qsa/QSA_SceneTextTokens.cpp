#include "qsa/QSALoader.h"

QSA_Token QSALoader::NextToken()
{
    constexpr int32_t kReach = 256; // a keyword with its end fits easily
    int32_t depth = 0;
    while (Reach(1)) {
        QSA_TextCursor text = Cursor();
        text.SkipToStructure();
        if (text.at >= text.end) {
            position = size;
            continue;
        }
        const uint8_t mark = *text.at++;
        MoveTo(text);
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

QSA_Token QSALoader::NextToken(QSA_TextCursor& text)
{
    MoveTo(text);
    const QSA_Token token = NextToken();
    text = Cursor();
    return token;
}

bool QSALoader::FileVersionAtLeast(int32_t major, int32_t minor) const
{
    return major * 256 + minor <= fileMajor * 256 + fileMinor;
}
