#pragma once

#include <cstdint>
#include <memory>

/// Hash of a text for `NameIndex`; with `foldCase` equal for texts that differ only in ASCII case.
uint32_t HashName(const char* text, bool foldCase);

/// Finds numbers by the hash of a name; the names themselves stay with the owner. Several numbers
/// may share a hash, so the owner compares. Open addressing, at most half full.
class NameIndex {
public:
    /// `number` is 0 or above.
    void Add(uint32_t hash, int32_t number);
    void Clear();

    /// The first number under `hash` that `isEqual(number)` accepts, or -1.
    template <class IsEqual>
    int32_t Find(uint32_t hash, IsEqual isEqual) const
    {
        if (size == 0)
            return -1;
        for (uint32_t i = hash & (size - 1); cells[i].number >= 0; i = (i + 1) & (size - 1)) {
            if (cells[i].hash == hash && isEqual(cells[i].number))
                return cells[i].number;
        }
        return -1;
    }

private:
    struct Cell {
        uint32_t hash = 0;
        int32_t number = -1; ///< -1: free
    };

    void Grow();
    void Place(uint32_t hash, int32_t number);

    std::unique_ptr<Cell[]> cells; ///< owned; `size` of them, a power of two
    uint32_t size = 0;
    uint32_t used = 0;
};
