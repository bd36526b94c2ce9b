#pragma once

#include <cstddef>

/// What a scan met, so that no compiler takes it for useless.
struct BareScanResult {
    size_t words = 0;
    size_t numbers = 0;
    double sum = 0.0; ///< of all finite numbers
};

/// The least that any reader of such a text has to do: every token is found, and every one that
/// looks like a number goes through `std::from_chars`. Nothing is kept.
BareScanResult BareScan(const char* text, size_t size);
