#include "base/Ascii.h"

static int FoldedByte(char c)
{
    return static_cast<unsigned char>(ToLowerAscii(c));
}

int CompareNoCase(const char* left, const char* right)
{
    while (*left && FoldedByte(*left) == FoldedByte(*right)) {
        ++left;
        ++right;
    }
    return FoldedByte(*left) - FoldedByte(*right);
}

int CompareNoCase(const char* left, const char* right, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        const int difference = FoldedByte(left[i]) - FoldedByte(right[i]);
        if (difference != 0 || left[i] == 0)
            return difference;
    }
    return 0;
}
