#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// The binary files of this program, and those that it reads, begin each number with its lowest byte. Numbers in
// memory have the order of the processor. Everything that takes numbers from the bytes of a file or puts
// them there does it with these operations, the only ones that depend on that order. Where both orders are the same,
// as on x86, they copy or do nothing.
//
// `order` is the order of numbers in memory. Tests give the other one.

/// Reverses the bytes of each word. `wordBytes` is the size of one.
inline void ReverseWords(void* words, size_t wordBytes, size_t count)
{
    auto* at = static_cast<uint8_t*>(words);
    for (size_t i = 0; i < count; ++i, at += wordBytes)
        std::reverse(at, at + wordBytes);
}

/// Brings words from the order of files to that of memory, or back, in place.
template <std::endian order = std::endian::native>
[[gnu::always_inline]] inline void ReorderWords([[maybe_unused]] void* words,
                                                [[maybe_unused]] size_t wordBytes,
                                                [[maybe_unused]] size_t count)
{
    if constexpr (order == std::endian::big)
        ReverseWords(words, wordBytes, count);
}

/// The number at `at`, which needs no alignment.
template <class Number, std::endian order = std::endian::native>
Number LoadLittle(const void* at)
{
    static_assert(std::is_arithmetic_v<Number>);
    Number number;
    std::memcpy(&number, at, sizeof number);
    ReorderWords<order>(&number, sizeof number, 1);
    return number;
}

template <std::endian order = std::endian::native, class Number>
void StoreLittle(void* at, Number number)
{
    static_assert(std::is_arithmetic_v<Number>);
    ReorderWords<order>(&number, sizeof number, 1);
    std::memcpy(at, &number, sizeof number);
}

/// Calls `use` with the address of `sizeBytes` bytes: the words at `words`, each of `wordBytes`, in the order of
/// files.
template <size_t sizeBytes, size_t wordBytes, std::endian order = std::endian::native, class Use>
[[gnu::always_inline]] inline void UseInFileOrder(const void* words, Use use)
{
    static_assert(sizeBytes % wordBytes == 0);
    if constexpr (order == std::endian::big) {
        uint8_t bytes[sizeBytes];
        std::memcpy(bytes, words, sizeBytes);
        ReverseWords(bytes, wordBytes, sizeBytes / wordBytes);
        use(bytes);
    } else {
        use(words);
    }
}

/// A pixel of `size` bytes in a picture in memory: 1, 2 and 4 bytes are a number in the order of memory, 3 bytes
/// have the lowest first everywhere, as no number has three.
template <std::endian order = std::endian::native>
uint32_t LoadPixelBytes(const void* at, size_t size)
{
    uint8_t bytes[sizeof(uint32_t)] = {};
    std::memcpy(bytes, at, size);
    if (size != 3)
        ReorderWords<order>(bytes, size, 1);
    return LoadLittle<uint32_t>(bytes);
}

/// Stores the low `size` bytes of `pixel`.
template <std::endian order = std::endian::native>
void StorePixelBytes(void* at, uint32_t pixel, size_t size)
{
    uint8_t bytes[sizeof pixel];
    StoreLittle(bytes, pixel);
    if (size != 3)
        ReorderWords<order>(bytes, size, 1);
    std::memcpy(at, bytes, size);
}
