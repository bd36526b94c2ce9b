#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Mutators that know a form. `LLVMFuzzerCustomMutator` and `LLVMFuzzerCustomCrossOver` of a target pass
// their inputs on; libFuzzer's own mutator has its turns besides.

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

/// One input in this many is left to libFuzzer's own mutator, which finds what breaks the form.
inline constexpr size_t kPlainTurns = 4;

inline std::string_view TextOf(const uint8_t* data, size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Puts a made input in the place of `data`, cut at `maxSize`. Returns its size.
inline size_t ReplaceInput(std::string_view made, uint8_t* data, size_t maxSize)
{
    return made.copy(reinterpret_cast<char*>(data), maxSize);
}
