#pragma once

#include <d3dx9.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/effect/FxDiagnostics.h"
#include "platform/headless/d3dx/effect/FxExpression.h"
#include "platform/headless/d3dx/effect/FxStates.h"

namespace headless::fx {

struct FxParameter;
struct FxShader;

/// A texture, sampler or shader that an assignment names.
struct FxObject {
    const FxParameter* parameter = nullptr; ///< null for NULL; not owned, lives in the effect
    FxExpression index;                     ///< index into an array; empty for none

    /// The parameter, or the array element that the index selects, clamped to the array.
    const FxParameter* Resolve(std::vector<FxNumber>& scratch) const;
};

/// `State[index] = value;` in a pass or a sampler.
struct FxAssignment {
    const FxState* state = nullptr; ///< not owned, lives in its table
    UINT index = 0;
    FxExpression value; ///< empty for objects
    FxObject object;
    std::shared_ptr<FxShader> shader; ///< of an `asm` block in its place; null for none
    /// The value has the bits that the state takes; compiled effects convert beforehand.
    bool isConverted = false;

    bool Reads(const FxParameter& parameter) const;
    uint64_t Newest() const;
};

/// The values of a parameter with all its elements and members. Effects of a pool share it.
struct FxStorage {
    std::vector<FxCell> cells;
    std::vector<std::string> strings;
    std::vector<ComPointer<IDirect3DBaseTexture9>> textures;
    uint64_t changed = 0; ///< by `FxStamp`

    /// Records a change.
    void Touch();
};

/// A new stamp, rising with every change of any parameter.
uint64_t FxStamp();

struct FxType;

/// A parameter, one of its elements, members or annotations. Its address is its handle.
struct FxParameter {
    std::string name;
    std::string semantic;
    bool hasSemantic = false;
    D3DXPARAMETER_CLASS kind = D3DXPC_SCALAR;
    D3DXPARAMETER_TYPE type = D3DXPT_FLOAT;
    UINT rows = 0;
    UINT columns = 0;
    UINT elements = 0; ///< 0 if not an array
    /// Of an array of several, outermost first; empty for one. Callers of the effect see elements only.
    std::vector<UINT> dimensions;
    DWORD flags = 0;
    std::shared_ptr<FxStorage> storage;
    size_t first = 0; ///< index of its first cell, string or texture in `storage`
    std::vector<std::unique_ptr<FxParameter>>
        parts; ///< an array's elements, else a struct's members
    std::vector<std::unique_ptr<FxParameter>> annotations;
    std::vector<FxAssignment> samplerStates; ///< of a sampler that is not an array
    DWORD shaderVersion = 0;          ///< of a shader parameter, as in compiled code; 0 for NULL
    std::shared_ptr<FxShader> shader; ///< of an `asm` block; null if it is compiled, and for NULL

    bool IsArray() const { return elements > 0; }
    bool IsNumeric() const { return kind <= D3DXPC_MATRIX_COLUMNS; }
    bool IsTexture() const { return type >= D3DXPT_TEXTURE && type <= D3DXPT_TEXTURECUBE; }
    bool IsSampler() const { return type >= D3DXPT_SAMPLER && type <= D3DXPT_SAMPLERCUBE; }
    bool IsShader() const { return type == D3DXPT_PIXELSHADER || type == D3DXPT_VERTEXSHADER; }
    FxShape Shape() const { return {type, rows, columns}; }
    /// Cells of one element.
    UINT CellCount() const { return rows * columns; }
    /// Number of cells, or objects, over all elements; 0 for a struct.
    size_t ValueCount() const;
    /// The size that `D3DXPARAMETER_DESC` reports.
    UINT ByteCount() const;

    FxCell* Cells() { return storage->cells.data() + first; }
    const FxCell* Cells() const { return storage->cells.data() + first; }
};

/// A parameter of its own storage with all its parts, all 0; `elements` is 0 for no array. The caller has
/// counted it (`FxSizes`).
std::unique_ptr<FxParameter> FxMakeParameter(const FxType& type, UINT elements);

/// Whether a state can take the object that a parameter, or an element of it, holds.
bool FxFits(const FxState& state, const FxParameter& parameter);

/// Whether the states of a sampler, or of the elements of an array of them, read a parameter.
bool FxSamplerReads(const FxParameter& sampler, const FxParameter& parameter);
/// The stamp of the newest change to a sampler or to what its states read.
uint64_t FxSamplerNewest(const FxParameter& sampler);

/// The part, element or annotation of that name; null if there is none.
FxParameter* FxFindByName(const std::vector<std::unique_ptr<FxParameter>>& list,
                          std::string_view name);
/// `name`, `name.member`, `name[2]`, each optionally followed by `@annotation`, in the list or, if there is
/// a parent, in its parts; below a parent the path may begin with a sign. Null if there is none.
FxParameter* FxFindPath(const std::vector<std::unique_ptr<FxParameter>>& list, FxParameter* parent,
                        std::string_view path);

} // namespace headless::fx
