#include "base/NameIndex.h"

#include <utility>

#include "base/Ascii.h"

uint32_t HashName(const char* text, bool foldCase)
{
    // Multiply and fold, one byte at a time; the last step spreads the high bits downwards, since
    // the index takes its cell from the low ones.
    uint32_t hash = 2166136261u;
    for (; *text; ++text) {
        const char c = foldCase ? ToLowerAscii(*text) : *text;
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    return hash ^ (hash >> 15);
}

void NameIndex::Add(uint32_t hash, int32_t number)
{
    if (used * 2 >= size)
        Grow();
    Place(hash, number);
    ++used;
}

void NameIndex::Clear()
{
    cells.reset();
    size = 0;
    used = 0;
}

void NameIndex::Grow()
{
    const uint32_t oldSize = size;
    const uint32_t newSize = oldSize == 0 ? 16 : oldSize * 2;
    const std::unique_ptr<Cell[]> old = std::exchange(cells, std::make_unique<Cell[]>(newSize));
    size = newSize;
    for (uint32_t i = 0; i < oldSize; ++i) {
        if (old[i].number >= 0)
            Place(old[i].hash, old[i].number);
    }
}

void NameIndex::Place(uint32_t hash, int32_t number)
{
    uint32_t i = hash & (size - 1);
    while (cells[i].number >= 0)
        i = (i + 1) & (size - 1);
    cells[i] = {hash, number};
}
