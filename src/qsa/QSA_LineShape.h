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

    struct Field {
        uint32_t end;  ///< of its digits, from the start of the line
        uint64_t kept; ///< the digits and the blanks before them, in the word that ends there
    };

    bool LearnField(size_t i, uint32_t begin);
    void LearnBytes();

    // What each byte of the line may be at least and at most; `size` of them, padded to whole
    // blocks with what any byte may be.
    alignas(kBlock) uint8_t low[kMostBytes] = {};
    alignas(kBlock) uint8_t high[kMostBytes] = {};
    size_t size = 0; ///< with the byte behind the last number; 0: no layout
    size_t count = 0;
    Field fields[kMostNumbers] = {};
    int32_t values[kMostNumbers] = {};
    const uint8_t* start = nullptr; ///< of the line that is being read
};
