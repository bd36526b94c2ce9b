#pragma once

#include <d3dx9.h>

#include <cstdint>
#include <string>
#include <vector>

/// Lays out a compiled effect (fx_2_0) word by word, as a compiler would or as none would: a pool of types, names
/// and values, which are named by their offsets, then parameters, techniques, and the contents of objects.
class EffectFile {
public:
    using Words = std::vector<uint32_t>;
    /// Offsets of a type and of a value.
    struct Typed {
        uint32_t type = 0, value = 0;
    };
    struct State {
        uint32_t operation = 0, index = 0;
        Typed value;
    };
    struct Pass {
        std::string name;
        std::vector<State> states;
        std::vector<Typed> annotations;
    };
    /// Whose value a resource is. `technique` is `kNone` for a sampler: `index` is the parameter then.
    struct Place {
        uint32_t technique = 0, index = 0, element = 0xFFFFFFFF, state = 0, usage = 0;
    };
    static constexpr uint32_t kNone = 0xFFFFFFFF;
    static constexpr uint32_t kCode = 0, kReference = 1, kSelector = 2, kComputation = 3;

    /// The words of a type. A struct's members have theirs behind its own.
    Words NumberType(D3DXPARAMETER_TYPE type, D3DXPARAMETER_CLASS kind, const std::string& name,
                     uint32_t rows, uint32_t columns, uint32_t elements = 0);
    Words ObjectType(D3DXPARAMETER_TYPE type, const std::string& name, uint32_t elements = 0);
    Words StructType(const std::string& name, const std::vector<Words>& members,
                     uint32_t elements = 0);
    /// The semantic of the types that follow; "" for none.
    std::string semantic;

    uint32_t Put(const Words& words);
    uint32_t Text(const std::string& text);
    Typed Float(const std::string& name, float value);
    Typed Int(const std::string& name, int32_t value);
    Typed Floats(const std::string& name, const std::vector<float>& values);
    Typed Matrix(const std::string& name, const std::vector<float>& values, uint32_t elements = 0);
    Typed String(const std::string& name, const std::string& text);
    /// An object without contents, whose number is `lastObject`.
    Typed Object(D3DXPARAMETER_TYPE type, const std::string& name);
    uint32_t lastObject = 0;

    void AddParameter(Typed parameter, uint32_t flags = 0,
                      const std::vector<Typed>& annotations = {});
    void AddTechnique(const std::string& name, const std::vector<Pass>& passes);
    void AddContent(uint32_t object, const std::string& bytes);
    void AddResource(const Place& place, const std::string& bytes);

    std::string Bytes() const;

private:
    Words pool = {0}; ///< starts with the empty name
    Words parameters, techniques, strings, resources;
    uint32_t parameterCount = 0, techniqueCount = 0, stringCount = 0, resourceCount = 0;
};

/// A row of a constant table.
struct TableConstant {
    std::string name;
    uint16_t set = 2; ///< 0 bool, 1 int, 2 float, 3 sampler
    uint16_t firstRegister = 0;
    uint16_t registerCount = 1;
    D3DXPARAMETER_CLASS kind = D3DXPC_VECTOR;
    D3DXPARAMETER_TYPE type = D3DXPT_FLOAT;
    uint16_t rows = 1, columns = 4, elements = 1;
    std::vector<TableConstant> members; ///< of a struct; their registers do not count
};

/// The words of some bytes, and the bytes of some words, filled with 0 to a whole word.
std::vector<uint32_t> WordsOfBytes(const std::string& bytes);
std::string BytesOfWords(const std::vector<uint32_t>& words);

/// A comment of a program: four letters and words.
std::vector<uint32_t> ProgramComment(const char* letters, const std::vector<uint32_t>& words);
/// The contents of a 'CTAB' comment.
std::vector<uint32_t> ConstantTableWords(const std::vector<TableConstant>& constants);
/// A computation: inputs, literals, which are filled to whole registers of four, and the words of its instructions, which count `instructionCount`.
std::vector<uint32_t> ComputationWords(const std::vector<TableConstant>& inputs,
                                       const std::vector<double>& literals,
                                       uint32_t instructionCount,
                                       const std::vector<uint32_t>& instructions);
/// A shader's words with comments behind the version.
std::string ShaderBytes(const std::vector<uint32_t>& shader, const std::vector<uint32_t>& comments);

/// `mov oPos, v0` and `mov oC0, c0`, laid out by hand.
const std::vector<uint32_t>& PlainVertexShader();
const std::vector<uint32_t>& PlainPixelShader();
