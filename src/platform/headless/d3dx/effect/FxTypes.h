#pragma once

#include <d3dx9.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxNumber.h"

namespace headless::fx {

struct FxParameter;
struct FxStruct;
using FxParameterNames = std::map<std::string, FxParameter*, std::less<>>; ///< not owned

/// A type that a parameter can be declared with.
struct FxType {
    D3DXPARAMETER_CLASS kind = D3DXPC_SCALAR;
    D3DXPARAMETER_TYPE type = D3DXPT_FLOAT;
    UINT rows = 1; ///< 0, like `columns`, for objects and structs
    UINT columns = 1;
    const FxStruct* structure = nullptr; ///< not owned, lives in `FxNames`
    /// False for a type of the published language that this host lacks. Anything declared with it
    /// keeps only its name.
    bool isModelled = true;
    /// Of an array, outermost first; empty for none.
    std::vector<UINT> lengths = {};

    /// The elements of all dimensions together; 0 for no array.
    UINT Elements() const;
    bool HasUnstatedLength() const { return !lengths.empty() && lengths[0] == 0; }
    bool IsNumeric() const { return kind <= D3DXPC_MATRIX_COLUMNS; }
    bool IsVoid() const { return kind == D3DXPC_OBJECT && type == D3DXPT_VOID; }
    FxShape Shape() const { return {type, rows, columns}; }

    static FxType Of(D3DXPARAMETER_TYPE type, UINT rows, UINT columns, bool isMatrix);
    static FxType Object(D3DXPARAMETER_TYPE type);
    static FxType Unmodelled();
};

struct FxMember {
    FxType type;
    std::string name;
    std::string semantic;
    bool hasSemantic = false;
    UINT elements = 0;
};

struct FxStruct {
    std::vector<FxMember> members;
    int depth = 1;    ///< nesting of structs, including this one
    size_t nodes = 0; ///< parameters that one value takes, excluding itself
    size_t cells = 0;
    bool isModelled = true; ///< true if all members are

    /// False, and nothing added, if the struct becomes larger or deeper than an effect may be.
    bool Add(FxMember member);
};

/// How much the parameters of an effect take.
struct FxSizes {
    size_t nodes = 0;
    size_t cells = 0;

    /// Counts a parameter; `elements` is 0 for no array. False if the effect has too many.
    bool Add(const FxType& type, UINT elements);
    /// Counts the bytes of a name that is stored.
    bool AddText(size_t bytes);

private:
    size_t textBytes = 0;
};

/// A built-in type: `float`, `int3`, `half4x4`, `texture2D`, `sampler`, `string`, `void`... False for
/// any other word.
bool FxFindBuiltInType(std::string_view name, FxType& typeOut);

/// What the names in an effect's text mean at this point.
struct FxNames {
    FxParameterNames parameters;                      ///< live in the effect
    std::map<std::string, FxType, std::less<>> types; ///< structs and `typedef`
    std::set<std::string, std::less<>> functions;
    std::vector<std::unique_ptr<FxStruct>> structs;
    std::set<std::string, std::less<>> unmodelled; ///< parameters that this host cannot store

    /// A type that values of expressions can have.
    bool FindType(std::string_view name, FxType& typeOut) const;
    /// Like `FindType`, plus types of the published language that this host lacks.
    bool FindDeclaredType(std::string_view name, FxType& typeOut) const;
    /// Whether the name is a parameter or a type that this host lacks.
    bool IsUnmodelled(std::string_view name) const;
};

} // namespace headless::fx
