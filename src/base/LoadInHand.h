#pragma once

#include <cstddef>

class String;

/// What a loader is at work on. While a file is in hand, an `Error` whose text does not hold the
/// file's name comes behind a `Warning` that tells file and object: lists, name trees and the device
/// know neither.
struct LoadInHand {
    const char* file = nullptr;     ///< not owned; null: nothing is being loaded
    const String* object = nullptr; ///< not owned; name of the object in hand, may be empty yet
};
extern LoadInHand gLoadInHand;

/// Takes a file or an object in hand while it lives, and puts back what was there before.
class LoadScope {
public:
    explicit LoadScope(const char* file) : before(gLoadInHand) { gLoadInHand = {file, nullptr}; }
    explicit LoadScope(const String& objectName) : before(gLoadInHand)
    {
        gLoadInHand.object = &objectName;
    }
    ~LoadScope() { gLoadInHand = before; }
    LoadScope(const LoadScope&) = delete;
    LoadScope& operator=(const LoadScope&) = delete;

private:
    const LoadInHand before;
};

/// The text of the `Warning` that is due ahead of an error's message. False if none is: nothing is
/// in hand, or the message names the file itself.
bool DescribeLoad(const char* message, char* textOut, std::size_t size);
