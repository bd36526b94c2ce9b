#include "info/FieldList.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "info/NameText.h"

std::string Field::PartName(int32_t i) const
{
    static constexpr const char* kAxes[] = {".x", ".y", ".z", ".w"};
    static constexpr const char* kChannels[] = {".r", ".g", ".b", ".a"};
    switch (kind) {
    case FieldKind::kVector:
    case FieldKind::kQuaternion:
        return kAxes[i & 3];
    case FieldKind::kColor:
        return kChannels[i & 3];
    case FieldKind::kMatrix:
        return '[' + std::to_string(i / 4) + "][" + std::to_string(i % 4) + ']';
    case FieldKind::kWholes:
    case FieldKind::kReals:
        return '[' + std::to_string(i) + ']';
    default:
        return "";
    }
}

std::string Field::PartText(int32_t i) const
{
    if (kind == FieldKind::kText)
        return QuotedName(text);
    const double number = numbers[static_cast<size_t>(i)];
    if (kind == FieldKind::kBits) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "0x%08X", static_cast<unsigned>(number));
        return digits;
    }
    return IsWhole() ? std::to_string(static_cast<int64_t>(number))
                     : ShortestText(static_cast<float>(number));
}

const Field* FieldList::Find(const char* name) const
{
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const Field& field) {
        return std::strcmp(field.name, name) == 0;
    });
    return found == fields.end() ? nullptr : &*found;
}

void FieldList::CutTo(double step)
{
    // The value read back is a float, which may be off by another half unit in its last place.
    fields.back().step = step + 0x1p-25;
}

Field& FieldList::Add(const char* name, FieldKind kind, int32_t count)
{
    return fields.emplace_back(Field{name, kind, count, {}, {}, 0});
}

void FieldList::AddFloats(const char* name, FieldKind kind, const float* values, int32_t count)
{
    std::copy_n(values, count, Add(name, kind, count).numbers.begin());
}

void FieldList::Whole(const char* name, int64_t value)
{
    Add(name, FieldKind::kWhole, 1).numbers[0] = static_cast<double>(value);
}

void FieldList::Real(const char* name, float value)
{
    AddFloats(name, FieldKind::kReal, &value, 1);
}

void FieldList::Bits(const char* name, uint32_t bits)
{
    Add(name, FieldKind::kBits, 1).numbers[0] = bits;
}

void FieldList::Text(const char* name, const char* text)
{
    Add(name, FieldKind::kText, 0).text = text;
}

void FieldList::Reals(const char* name, const float* values, int32_t count)
{
    AddFloats(name, FieldKind::kReals, values, count);
}

void FieldList::Vector(const char* name, const D3DXVECTOR3& vector)
{
    const float values[] = {vector.x, vector.y, vector.z};
    AddFloats(name, FieldKind::kVector, values, 3);
}

void FieldList::Quaternion(const char* name, const D3DXQUATERNION& q)
{
    const float values[] = {q.x, q.y, q.z, q.w};
    AddFloats(name, FieldKind::kQuaternion, values, 4);
}

void FieldList::Color(const char* name, const D3DCOLORVALUE& color)
{
    const float values[] = {color.r, color.g, color.b, color.a};
    AddFloats(name, FieldKind::kColor, values, 4);
}

void FieldList::Matrix(const char* name, const D3DXMATRIX& matrix)
{
    AddFloats(name, FieldKind::kMatrix, &matrix.m[0][0], 16);
}
