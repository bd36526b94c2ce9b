#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/shader/Tokens.h"

namespace headless::hl {

enum class HlKind : uint8_t { Error, Void, Number, Sampler, Object, Struct, Array };
enum class HlBase : uint8_t { Bool, Int, Float };
enum class HlForm : uint8_t { Scalar, Vector, Matrix };

struct HlStruct;

/// A type of the shading language. Types live in an `HlTypes`; the same numeric type has one address
/// for each order of its rows.
struct HlType {
    HlKind kind = HlKind::Error;
    HlBase base = HlBase::Float;
    HlForm form = HlForm::Scalar;
    uint8_t rows = 1; ///< a vector is one row
    uint8_t columns = 1;
    bool isColumnMajor = true; ///< a register holds a column of the matrix
    shader::SamplerKind sampler = shader::SamplerKind::Unknown;
    const HlStruct* structure = nullptr;
    const HlType* element = nullptr; ///< of an array
    uint32_t count = 0; ///< of its elements; 0 if the text leaves it to the initial value
    uint32_t cells = 1; ///< numbers and objects in one value
    int depth = 1;      ///< of nested structs and arrays

    bool IsNumber() const { return kind == HlKind::Number; }
    bool IsScalar() const { return IsNumber() && form == HlForm::Scalar; }
    bool IsVector() const { return IsNumber() && form == HlForm::Vector; }
    bool IsMatrix() const { return IsNumber() && form == HlForm::Matrix; }
    bool IsError() const { return kind == HlKind::Error; }
};

struct HlMember {
    std::string_view name;
    const HlType* type = nullptr;
    std::string_view semantic; ///< "" for none
    uint32_t first = 0;        ///< its first cell
};

struct HlStruct {
    std::string_view name;
    std::vector<HlMember> members;

    const HlMember* Find(std::string_view member) const;
};

/// Cells of the largest value.
constexpr uint32_t kHlMaxCells = 1u << 16;
constexpr int kHlMaxTypeDepth = 16;

class HlTypes {
public:
    HlTypes();
    HlTypes(const HlTypes&) = delete;
    HlTypes& operator=(const HlTypes&) = delete;

    const HlType* Error() const { return &error; }
    const HlType* Void() const { return &nothing; }
    const HlType* Object() const { return &object; }
    const HlType* Scalar(HlBase base) const { return Number(base, HlForm::Scalar, 1, 1); }
    const HlType* Vector(HlBase base, unsigned count) const
    {
        return Number(base, HlForm::Vector, 1, count);
    }
    const HlType* Matrix(HlBase base, unsigned rows, unsigned columns) const
    {
        return Number(base, HlForm::Matrix, rows, columns);
    }
    const HlType* Number(HlBase base, HlForm form, unsigned rows, unsigned columns,
                         bool isColumnMajor = true) const;
    const HlType* Sampler(shader::SamplerKind kind) const;
    /// The same type with another base.
    const HlType* WithBase(const HlType& type, HlBase base) const;
    /// Null if values would be too large or too deep. A count of 0 stands for one that is not known yet.
    const HlType* Array(const HlType& element, uint32_t count);
    const HlType* Struct(const HlStruct& structure);
    HlStruct& NewStruct();
    /// `float`, `int3`, `half4x4`, `sampler2D`, `texture`...; null for another word.
    const HlType* Find(std::string_view name) const;

    /// As messages show it: "float3", "float4x4", "struct Light", "int[4]".
    static std::string Name(const HlType& type);

private:
    HlType error, nothing, object;
    HlType numbers[3][3][4][4][2];
    HlType samplers[5];
    std::deque<HlType> made;
    std::deque<HlStruct> structs;
};

} // namespace headless::hl
