#include "info/JsonWriter.h"

#include <charconv>
#include <cmath>
#include <iterator>

#include "info/NameText.h"

namespace {

template <class Number>
std::string NumberText(Number value)
{
    if (!std::isfinite(value))
        return "null";
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), value);
    return {text, end.ptr};
}

std::string PartJson(const Field& field, int32_t i)
{
    const double number = field.numbers[static_cast<size_t>(i)];
    if (field.IsWhole())
        return std::to_string(static_cast<int64_t>(number));
    return NumberText(static_cast<float>(number));
}

std::string FieldJson(const Field& field)
{
    if (field.kind == FieldKind::kText)
        return JsonText(field.text);
    if (field.kind == FieldKind::kBits)
        return '"' + field.PartText(0) + '"';
    if (!field.IsList())
        return PartJson(field, 0);
    std::string json = "[";
    for (int32_t i = 0; i < field.count; ++i) {
        json += i > 0 ? ", " : "";
        json += PartJson(field, i);
    }
    return json + "]";
}

} // namespace

void JsonWriter::Value(const char* key, std::string_view json)
{
    if (!hasMembers.empty()) {
        output.Add(hasMembers.back() ? ",\n" : "\n");
        hasMembers.back() = true;
        output.Add(std::string(2 * hasMembers.size(), ' '));
    }
    if (key) {
        output.Add("\"");
        output.Add(key);
        output.Add("\": ");
    }
    output.Add(json);
}

void JsonWriter::Begin(const char* key, char bracket)
{
    Value(key, {&bracket, 1});
    hasMembers.push_back(false);
}

void JsonWriter::End(char bracket)
{
    const bool hadMembers = hasMembers.back();
    hasMembers.pop_back();
    if (hadMembers)
        output.Add("\n" + std::string(2 * hasMembers.size(), ' '));
    output.Add({&bracket, 1});
    if (hasMembers.empty())
        output.Add("\n");
}

void JsonWriter::Text(const char* key, std::string_view bytes)
{
    Value(key, JsonText(bytes));
}

void JsonWriter::Whole(const char* key, int64_t value)
{
    Value(key, std::to_string(value));
}

void JsonWriter::Real(const char* key, double value)
{
    Value(key, NumberText(value));
}

void JsonWriter::Bool(const char* key, bool value)
{
    Value(key, value ? "true" : "false");
}

void JsonWriter::Null(const char* key)
{
    Value(key, "null");
}

void JsonWriter::Fields(const FieldList& fields)
{
    for (const Field& field : fields.All())
        Value(field.name, FieldJson(field));
}
