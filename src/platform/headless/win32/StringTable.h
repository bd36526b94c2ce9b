#pragma once

namespace headless {

/// One row of the program's string table.
struct StringResource {
    unsigned id;
    const char* text;
};

extern const StringResource kStringTable[];
extern const unsigned kStringTableCount;

} // namespace headless
