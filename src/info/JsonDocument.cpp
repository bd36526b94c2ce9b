#include "info/JsonDocument.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "info/NameText.h"

JsonValue JsonName(std::string_view bytes)
{
    return Utf8Name(bytes);
}

JsonValue JsonReal(double value)
{
    constexpr double kMostExactWhole = 0x1p53;
    if (!std::isfinite(value))
        return nullptr;
    const bool isMinusZero = value == 0 && std::signbit(value);
    if (std::trunc(value) == value && std::fabs(value) < kMostExactWhole && !isMinusZero)
        return static_cast<int64_t>(value); // prints 8, not 8.0
    return value;
}

JsonValue JsonReal(float value)
{
    if (!std::isfinite(value))
        return nullptr;
    const std::string text = ShortestText(value);
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return JsonReal(number);
}

// ---- Fields

static JsonValue PartOf(const Field& field, int32_t i)
{
    const double number = field.numbers[static_cast<size_t>(i)];
    if (field.IsWhole())
        return static_cast<int64_t>(number);
    return JsonReal(static_cast<float>(number));
}

static JsonValue ValueOf(const Field& field)
{
    if (field.kind == FieldKind::kText)
        return JsonName(field.text);
    if (field.kind == FieldKind::kBits)
        return field.PartText(0);
    if (!field.IsList())
        return PartOf(field, 0);
    JsonValue list = JsonValue::array();
    for (int32_t i = 0; i < field.count; ++i)
        list.push_back(PartOf(field, i));
    return list;
}

void AddJsonFields(const FieldList& fields, JsonValue& objectOut)
{
    for (const Field& field : fields.All())
        objectOut[field.name] = ValueOf(field);
}

// ---- Text

namespace {

std::string LeafText(const JsonValue& value)
{
    const bool isHarmless =
        !value.is_string() || !HasHiddenCharacters(value.get_ref<const std::string&>());
    return value.dump(-1, ' ', !isHarmless);
}

bool IsRow(const JsonValue& value)
{
    return value.is_array() && std::all_of(value.begin(), value.end(), [](const JsonValue& part) {
               return part.is_number() || part.is_null();
           });
}

std::string RowText(const JsonValue& row)
{
    std::string text;
    for (const JsonValue& part : row)
        text += (text.empty() ? "" : ", ") + LeafText(part);
    return "[" + text + "]";
}

/// A document is only a few levels deep.
void PrintValue(const JsonValue& value, const std::string& indent, Output& output)
{
    if (IsRow(value))
        return output.Add(RowText(value));
    if (!value.is_structured())
        return output.Add(LeafText(value));
    const std::string inner = indent + "  ";
    const char* separator = "\n";
    output.Add(value.is_object() ? "{" : "[");
    for (const auto& [key, part] : value.items()) {
        output.Add(separator + inner);
        if (value.is_object())
            output.Add(LeafText(key) + ": ");
        PrintValue(part, inner, output);
        separator = ",\n";
    }
    if (!value.empty())
        output.Add("\n" + indent);
    output.Add(value.is_object() ? "}" : "]");
}

} // namespace

void PrintDocument(const JsonValue& document, Output& output)
{
    PrintValue(document, "", output);
    output.Add("\n");
}
