#pragma once

#include <cstddef>
#include <cstdint>

/// The results of a scan, so that no compiler removes it as unused.
struct BareScanResult {
    size_t words = 0; ///< keywords
    size_t numbers = 0;
    double sum = 0.0;  ///< of all numbers
    uint32_t hash = 0; ///< of all keywords
    size_t depth = 0;  ///< open braces
};

/// The minimum work of any reader of such a text: it passes each byte, takes keywords and quoted texts as a
/// whole, and reads each number by `std::from_chars`, whole ones as integers. Nothing is stored.
BareScanResult BareScan(const char* text, size_t size);
