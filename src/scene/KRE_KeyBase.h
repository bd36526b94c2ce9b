#pragma once

#include <cstdint>

class File;
class QSB_InputFile;

/// Interpolation from a key to the next one. Any other stored value is read as linear.
enum KeyInterpolation : uint16_t {
    kKeyLinear = 0, ///< for rotations: spherical linear
    kKeyBezier = 1, ///< positions and scales
    kKeyTcb = 2,    ///< rotations
};

/// A key as a node of the doubly linked list that `KRE_KeyList` keeps; `T` is the key's own class.
/// A copy has the values but no links.
template <class T>
class KRE_KeyBase {
public:
    KRE_KeyBase() = default;
    KRE_KeyBase(const KRE_KeyBase& other) : time(other.time) {}
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the links are not copied.
    KRE_KeyBase& operator=(const KRE_KeyBase& other)
    {
        time = other.time;
        return *this;
    }

    /// Writes this key and all later ones as in QSB files; returns their number.
    int32_t Save(File& file) const;
    /// Reads the values of one key; true if another one follows in the file.
    bool Load(QSB_InputFile& file);

    float time = 0;    ///< seconds from the start of the scene; ticks during a text import
    T* next = nullptr; ///< the later key, null at the end; lives in the list, as the next one
    T* prev = nullptr; ///< null at the head
};
