#pragma once

#include <cstddef>

/// The results of a scan, so that no compiler removes it as unused.
struct BareScanResult {
    size_t words = 0;
    size_t numbers = 0;
    double sum = 0.0; ///< of all finite numbers
};

/// The minimum work of any reader of such a text: it finds every token, and every one that
/// looks like a number goes through `std::from_chars`. Nothing is stored.
BareScanResult BareScan(const char* text, size_t size);
