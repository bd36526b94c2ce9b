#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "info/FieldList.h"
#include "info/Output.h"

/// Writes one JSON document, indented. Keys are literals without special characters; within a list
/// they are null.
class JsonWriter {
public:
    explicit JsonWriter(Output& outputIn) : output(outputIn) {}
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void BeginObject(const char* key = nullptr) { Begin(key, '{'); }
    void EndObject() { End('}'); }
    void BeginList(const char* key = nullptr) { Begin(key, '['); }
    void EndList() { End(']'); }

    /// Bytes of any kind, as `JsonText`.
    void Text(const char* key, std::string_view bytes);
    void Whole(const char* key, int64_t value);
    /// A number that JSON cannot say is null.
    void Real(const char* key, double value);
    void Bool(const char* key, bool value);
    void Null(const char* key);
    /// Each field under its name; numbers that belong together as a list.
    void Fields(const FieldList& fields);

private:
    void Begin(const char* key, char bracket);
    void End(char bracket);
    void Value(const char* key, std::string_view json);

    Output& output;
    std::vector<bool> hasMembers; ///< of each object or list that is open
};
