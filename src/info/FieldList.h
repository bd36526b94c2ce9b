#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <d3dx9.h>

/// The type of a field's numbers.
enum class FieldKind : uint8_t {
    kWhole,      ///< one whole number
    kReal,       ///< one float
    kBits,       ///< 32 bits: a colour 0xAARRGGBB, flags
    kText,       ///< a text, no numbers
    kWholes,     ///< `count` whole numbers
    kReals,      ///< `count` floats
    kVector,     ///< x, y, z
    kQuaternion, ///< x, y, z, w
    kColor,      ///< r, g, b, a
    kMatrix,     ///< 16 floats, row by row
};

/// One stored field of a record.
struct Field {
    static constexpr int32_t kMostNumbers = 16;

    const char* name; ///< a literal
    FieldKind kind;
    int32_t count; ///< of `numbers`
    std::array<double, kMostNumbers> numbers;
    std::string_view text; ///< of the record; valid only as long as it
    double step = 0; ///< a file may change the numbers by this much; 0 where it stores them exactly

    bool IsWhole() const { return kind == FieldKind::kWhole || kind == FieldKind::kWholes; }
    /// Whether the field is a list of numbers, of any length, and not a single value.
    bool IsList() const { return kind >= FieldKind::kWholes; }
    /// What to append to the field's name for one number: ".x", "[2]", "[3][1]"; "" for a single
    /// value.
    std::string PartName(int32_t i) const;
    /// A number, or the text in quotes, for people.
    std::string PartText(int32_t i) const;
};

/// The stored fields of one record, in file order. Names are literals.
class FieldList {
public:
    void Clear() { fields.clear(); }
    const std::vector<Field>& All() const { return fields; }
    /// The field with this name, or null.
    const Field* Find(const char* name) const;

    void Whole(const char* name, int64_t value);
    void Real(const char* name, float value);
    void Bits(const char* name, uint32_t bits);
    void Text(const char* name, const char* text);
    /// At most `Field::kMostNumbers`.
    void Reals(const char* name, const float* values, int32_t count);
    void Vector(const char* name, const D3DXVECTOR3& vector);
    void Quaternion(const char* name, const D3DXQUATERNION& q);
    void Color(const char* name, const D3DCOLORVALUE& color);
    void Matrix(const char* name, const D3DXMATRIX& matrix);
    /// Notes for the field added last that files cut its numbers to multiples of `step`.
    void CutTo(double step);
    /// At most `Field::kMostNumbers` whole numbers of any type.
    template <class T>
    void Wholes(const char* name, const T* values, int32_t count)
    {
        Field& field = Add(name, FieldKind::kWholes, count);
        for (int32_t i = 0; i < count; ++i)
            field.numbers[static_cast<size_t>(i)] = static_cast<double>(values[i]);
    }

private:
    Field& Add(const char* name, FieldKind kind, int32_t count);
    void AddFloats(const char* name, FieldKind kind, const float* values, int32_t count);

    std::vector<Field> fields;
};
