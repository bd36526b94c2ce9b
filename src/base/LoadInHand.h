#pragma once

#include <cstddef>

class String;

/// The file and object being loaded. Lists, name trees and the device know neither. So an `Error`
/// whose text does not contain the file's name is preceded by a `Warning` that names file and object.
struct LoadInHand {
    const char* file = nullptr; ///< not owned; null: nothing is being loaded
    const String* object =
        nullptr; ///< not owned; name of the object being loaded, may still be empty
};
extern LoadInHand gLoadInHand;

/// Sets the file or object being loaded while it lives, and then restores the previous one.
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

/// The text of the `Warning` that must precede an error's message. False if there is none: nothing is
/// being loaded, or the message names the file itself.
bool DescribeLoad(const char* message, char* textOut, size_t size);
