#include "qsa/QSA_LineShape.h"

#include <algorithm>

#include "qsa/QSA_DigitWord.h"

namespace {

constexpr uint32_t kWordBytes = 8; // of a number that is read as one word
constexpr uint64_t kBlanks = 0x2020202020202020;
constexpr uint64_t kDigitBits = 0x1010101010101010; // what digits have and blanks have not

bool IsDigit(uint8_t c)
{
    return c >= '0' && c <= '9';
}

} // namespace

bool QSA_LineShape::Take(QSA_TextCursor& cursor)
{
    const uint8_t* const line = cursor.at;
    if (size == 0 || cursor.end - line < static_cast<ptrdiff_t>(size))
        return false;
    simd::Ints4 differences = simd::SplatInt(0);
    for (size_t i = 0; i < size; i += kBlock) {
        const simd::Ints4 bytes = simd::LoadInts(line + i);
        const simd::Ints4 raised = MaxBytes(bytes, simd::LoadInts(low + i));
        differences = differences | (MinBytes(raised, simd::LoadInts(high + i)) ^ bytes);
    }
    if (ByteBits(AreBytesEqual(differences, simd::SplatInt(0))) != 0xFFFF)
        return false;

    uint64_t wrong = 0;
    for (size_t i = 0; i < count; ++i) {
        const uint64_t text = LoadTextWord(line + fields[i].end - kWordBytes);
        const uint64_t halves = (text ^ kBlanks) & fields[i].kept;
        const uint64_t isDigit = halves & kDigitBits;
        const uint64_t digits = halves ^ isDigit;
        // A blank is 0 by now, and none stands behind a digit.
        wrong |= (digits & ~(isDigit - (isDigit >> 4))) | ((isDigit << 8) & ~isDigit);
        values[i] = static_cast<int32_t>(JoinDigits(digits));
    }
    if (wrong != 0)
        return false;
    cursor.at = line + size - 1;
    return true;
}

void QSA_LineShape::Start(const QSA_TextCursor& cursor)
{
    start = cursor.at;
    size = 0;
    count = 0;
}

bool QSA_LineShape::TakeInt(QSA_TextCursor& cursor)
{
    if (count == kMostNumbers || !cursor.TakeInt(&values[count]))
        return false;
    fields[count++] = {static_cast<uint32_t>(cursor.at - start), 0};
    return true;
}

void QSA_LineShape::Finish(const QSA_TextCursor& cursor)
{
    const size_t length = static_cast<size_t>(cursor.at - start) + 1;
    if (count == 0 || length > kMostBytes)
        return;
    size = length;
    LearnBytes();
    uint32_t begin = 0;
    for (size_t i = 0; i < count && size > 0; ++i) {
        if (!LearnField(i, begin))
            size = 0;
        begin = fields[i].end;
    }
}

/// All bytes are what they are, digits any digit.
void QSA_LineShape::LearnBytes()
{
    const simd::Ints4 zero = simd::SplatByte('0');
    const simd::Ints4 nine = simd::SplatByte('9');
    for (size_t i = 0; i < size; i += kBlock) {
        const simd::Ints4 bytes = simd::LoadInts(start + i);
        const simd::Ints4 isDigit = AreBytesEqual(MinBytes(MaxBytes(bytes, zero), nine), bytes);
        StoreInts(low + i, Select(isDigit, zero, bytes));
        StoreInts(high + i, Select(isDigit, nine, bytes));
    }
    const size_t padded = (size + kBlock - 1) / kBlock * kBlock;
    std::fill(low + size, low + padded, uint8_t{0});
    std::fill(high + size, high + padded, uint8_t{255});
}

/// The digits of a number and the blanks before them, but one: it may end a keyword. `begin` is the
/// end of the number before.
bool QSA_LineShape::LearnField(size_t i, uint32_t begin)
{
    Field& field = fields[i];
    uint32_t at = field.end;
    while (at > begin && IsDigit(start[at - 1]))
        --at;
    const uint32_t digits = field.end - at;
    if (field.end < kWordBytes || digits == 0 || digits > kWordBytes || start[at - 1] == '-')
        return false;
    while (at - 1 > begin && field.end - at < kWordBytes && start[at - 1] == ' ' &&
           start[at - 2] == ' ')
        --at;
    field.kept = KeepLastBytes(~uint64_t{0}, field.end - at);
    for (uint32_t k = at; k < field.end; ++k) {
        low[k] = k + 1 < field.end ? ' ' : '0';
        high[k] = '9';
    }
    return true;
}
