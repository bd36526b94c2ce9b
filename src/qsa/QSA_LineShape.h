#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/Simd.h"
#include "qsa/QSA_TextCursor.h"

/// The layout of a line of whole numbers: its bytes, and which of them are digits. An exporter
/// writes line after line in the same layout, so a line that differs from the last one in nothing
/// but its digits needs no second look at the words between them: whatever reads it tells bytes
/// apart by their kind, and all digits are of one kind.
///
/// First `Start`, then the line is read number by number with `TakeInt`, then `Finish` keeps its
/// layout; from then on `Take` reads such lines at once, until one is different.
class QSA_LineShape {
public:
    static constexpr size_t kMostNumbers = 12;

    /// Takes a line of the kept layout and its numbers; blanks in front of a number count as the
    /// digits that it had there. False, with the cursor unchanged, for every other line.
    bool Take(QSA_TextCursor& cursor);
    /// A number of the last line.
    int32_t Number(size_t i) const { return values[i]; }
    size_t NumberCount() const { return count; }

    /// The line begins at the cursor, with the white space before it.
    void Start(const QSA_TextCursor& cursor);
    /// Reads a number of the line as the cursor does.
    bool TakeInt(QSA_TextCursor& cursor);
    /// The line ends behind its last number, at the cursor. A line of an unusual layout is not kept.
    void Finish(const QSA_TextCursor& cursor);

private:
    static constexpr size_t kBlock = sizeof(simd::Ints4);
    static constexpr size_t kMostBytes = 9 * kBlock;

    static constexpr uint32_t kWordBytes = 8; // of a number and the blanks before it

    bool TakeNumbers(const uint8_t* line, simd::Ints4 wrong);
    bool LearnField(size_t i, uint32_t begin);
    void LearnBytes();

    // What each byte of the line may be at least and at most; `size` of them, padded to whole
    // blocks with what any byte may be.
    alignas(kBlock) uint8_t low[kMostBytes] = {};
    alignas(kBlock) uint8_t high[kMostBytes] = {};
    size_t size = 0; ///< with the byte behind the last number; 0: no layout
    size_t count = 0;
    uint32_t ends[kMostNumbers] = {};   ///< of the numbers, from the start of the line
    uint32_t begins[kMostNumbers] = {}; ///< of the eight bytes that end with a number
    uint8_t kept[kMostNumbers][kWordBytes] =
        {}; ///< 255 for a number's digits and the blanks before them, else 0
    int32_t values[kMostNumbers] = {};
    static_assert(kMostNumbers % 4 == 0);
    const uint8_t* start = nullptr; ///< of the line that is being read
};

/// The layouts of the last two lines that differed: where numbers become longer, lines with and without the
/// longer ones take turns.
class QSA_LineShapes {
public:
    /// As the shape's; the line is `Last` then.
    bool Take(QSA_TextCursor& cursor)
    {
        if (shapes[last].Take(cursor))
            return true;
        last = 1 - last;
        return shapes[last].Take(cursor);
    }
    /// The layout of the last line. After `Take` gave false, the older one, to be learned anew.
    QSA_LineShape& Last() { return shapes[last]; }

private:
    QSA_LineShape shapes[2];
    size_t last = 0;
};
