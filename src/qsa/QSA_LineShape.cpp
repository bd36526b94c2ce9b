#include "qsa/QSA_LineShape.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char kDigitBit = '0' ^ ' '; // what digits have and blanks have not

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
    if (!TakeNumbers(line, differences))
        return false;
    cursor.at = line + size - 1;
    return true;
}

/// Reads the numbers four at a time, as most lines have about as many. False if one has a blank behind a
/// digit, or if a bit of `wrong` is set already.
bool QSA_LineShape::TakeNumbers(const uint8_t* line, simd::Ints4 wrong)
{
    const simd::Ints4 zero = simd::SplatInt(0);
    const auto takeDigits = [&](size_t i) {
        const simd::Ints4 text = simd::LoadBytes(line + begins[i], line + begins[i + 1]);
        const simd::Ints4 halves = (text ^ simd::SplatByte(' ')) & simd::LoadInts(kept[i]);
        const simd::Ints4 isDigit = halves & simd::SplatByte(kDigitBit);
        const simd::Ints4 digits = halves ^ isDigit;
        // A blank is 0 by now, and none stands behind a digit.
        wrong = wrong | (AreBytesEqual(isDigit, zero) & (digits | NextBytes(isDigit)));
        return digits;
    };
    for (size_t i = 0; i < count; i += 4) {
        const simd::Ints4 firstTwo = takeDigits(i);
        StoreInts(values + i, JoinDigits(firstTwo, takeDigits(i + 2)));
    }
    return ByteBits(AreBytesEqual(wrong, zero)) == 0xFFFF;
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
    ends[count++] = static_cast<uint32_t>(cursor.at - start);
    return true;
}

void QSA_LineShape::Finish(const QSA_TextCursor& cursor)
{
    const size_t length = static_cast<size_t>(cursor.at - start) + 1;
    if (count == 0 || length > kMostBytes)
        return;
    size = length;
    LearnBytes();
    std::memset(begins, 0, sizeof(begins));
    std::memset(kept, 0, sizeof(kept));
    uint32_t begin = 0;
    for (size_t i = 0; i < count && size > 0; ++i) {
        if (!LearnField(i, begin))
            size = 0;
        begin = ends[i];
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
    const uint32_t end = ends[i];
    uint32_t at = end;
    while (at > begin && IsDigit(start[at - 1]))
        --at;
    const uint32_t digits = end - at;
    if (end < kWordBytes || digits == 0 || digits > kWordBytes || start[at - 1] == '-')
        return false;
    while (at - 1 > begin && end - at < kWordBytes && start[at - 1] == ' ' && start[at - 2] == ' ')
        --at;
    begins[i] = end - kWordBytes;
    std::fill(kept[i] + (at - begins[i]), std::end(kept[i]), uint8_t{255});
    for (uint32_t k = at; k < end; ++k) {
        low[k] = k + 1 < end ? ' ' : '0';
        high[k] = '9';
    }
    return true;
}
