#pragma once

#include <string_view>

#include <nlohmann/json.hpp>

#include "info/FieldList.h"
#include "info/Output.h"

/// A document or a part of it; members keep the order in which they were added. Start an object with
/// `JsonValue::object()`: the library leaves a broken value if memory runs out while it turns null into an object.
using JsonValue = nlohmann::ordered_json;

/// A name of arbitrary bytes as a text.
JsonValue JsonName(std::string_view bytes);
/// A number; null for what JSON cannot represent. A float becomes the shortest decimal number that
/// reads back as the same float.
JsonValue JsonReal(double value);
JsonValue JsonReal(float value);
/// Adds each field to an object under its name; numbers that belong together as a list.
void AddJsonFields(const FieldList& fields, JsonValue& objectOut);

/// Prints a document, indented, with lists of numbers on one line. Texts with characters that a
/// terminal might not handle are escaped to ASCII.
void PrintDocument(const JsonValue& document, Output& output);
