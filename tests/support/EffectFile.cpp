#include "tests/support/EffectFile.h"

#include <bit>
#include <cstring>

namespace {

using Words = std::vector<uint32_t>;

void Append(Words& target, const Words& words)
{
    target.insert(target.end(), words.begin(), words.end());
}

uint32_t Count(size_t size)
{
    return static_cast<uint32_t>(size);
}

/// A length and bytes, filled to a whole word.
Words Block(const std::string& bytes)
{
    Words words = {Count(bytes.size())};
    Append(words, WordsOfBytes(bytes));
    return words;
}

void AppendTyped(Words& target, const std::vector<EffectFile::Typed>& rows)
{
    for (const EffectFile::Typed& row : rows)
        Append(target, {row.type, row.value});
}

} // namespace

std::vector<uint32_t> WordsOfBytes(const std::string& bytes)
{
    Words words((bytes.size() + 3) / 4);
    for (size_t i = 0; i < bytes.size(); ++i)
        words[i / 4] |= uint32_t{static_cast<unsigned char>(bytes[i])} << i % 4 * 8;
    return words;
}

std::string BytesOfWords(const std::vector<uint32_t>& words)
{
    std::string bytes;
    for (const uint32_t word : words)
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(word >> shift & 0xFF);
    return bytes;
}

uint32_t EffectFile::Put(const Words& words)
{
    const uint32_t offset = Count(pool.size() * 4);
    Append(pool, words);
    return offset;
}

uint32_t EffectFile::Text(const std::string& text)
{
    return text.empty() ? 0 : Put(Block(text + '\0'));
}

EffectFile::Words EffectFile::NumberType(D3DXPARAMETER_TYPE type, D3DXPARAMETER_CLASS kind,
                                         const std::string& name, uint32_t rows, uint32_t columns,
                                         uint32_t elements)
{
    Words words = {static_cast<uint32_t>(type), static_cast<uint32_t>(kind), Text(name),
                   Text(semantic), elements};
    Append(words, kind == D3DXPC_VECTOR ? Words{columns, rows} : Words{rows, columns});
    return words;
}

EffectFile::Words EffectFile::ObjectType(D3DXPARAMETER_TYPE type, const std::string& name,
                                         uint32_t elements)
{
    return {static_cast<uint32_t>(type), D3DXPC_OBJECT, Text(name), Text(semantic), elements};
}

EffectFile::Words EffectFile::StructType(const std::string& name, const std::vector<Words>& members,
                                         uint32_t elements)
{
    Words words = {D3DXPT_VOID,    D3DXPC_STRUCT, Text(name),
                   Text(semantic), elements,      Count(members.size())};
    for (const Words& member : members)
        Append(words, member);
    return words;
}

EffectFile::Typed EffectFile::Float(const std::string& name, float value)
{
    return {Put(NumberType(D3DXPT_FLOAT, D3DXPC_SCALAR, name, 1, 1)),
            Put({std::bit_cast<uint32_t>(value)})};
}

EffectFile::Typed EffectFile::Int(const std::string& name, int32_t value)
{
    return {Put(NumberType(D3DXPT_INT, D3DXPC_SCALAR, name, 1, 1)),
            Put({static_cast<uint32_t>(value)})};
}

EffectFile::Typed EffectFile::Floats(const std::string& name, const std::vector<float>& values)
{
    Words words;
    for (const float value : values)
        words.push_back(std::bit_cast<uint32_t>(value));
    return {Put(NumberType(D3DXPT_FLOAT, D3DXPC_VECTOR, name, 1, Count(values.size()))),
            Put(words)};
}

EffectFile::Typed EffectFile::Matrix(const std::string& name, const std::vector<float>& values,
                                     uint32_t elements)
{
    Words words;
    for (const float value : values)
        words.push_back(std::bit_cast<uint32_t>(value));
    return {Put(NumberType(D3DXPT_FLOAT, D3DXPC_MATRIX_ROWS, name, 4, 4, elements)), Put(words)};
}

EffectFile::Typed EffectFile::Object(D3DXPARAMETER_TYPE type, const std::string& name)
{
    return {Put(ObjectType(type, name)), Put({++lastObject})};
}

EffectFile::Typed EffectFile::String(const std::string& name, const std::string& text)
{
    const Typed typed = Object(D3DXPT_STRING, name);
    AddContent(lastObject, text + '\0');
    return typed;
}

void EffectFile::AddParameter(Typed parameter, uint32_t flags,
                              const std::vector<Typed>& annotations)
{
    Append(parameters, {parameter.type, parameter.value, flags, Count(annotations.size())});
    AppendTyped(parameters, annotations);
    ++parameterCount;
}

void EffectFile::AddTechnique(const std::string& name, const std::vector<Pass>& passes)
{
    Append(techniques, {Text(name), 0, Count(passes.size())});
    for (const Pass& pass : passes) {
        Append(techniques,
               {Text(pass.name), Count(pass.annotations.size()), Count(pass.states.size())});
        AppendTyped(techniques, pass.annotations);
        for (const State& state : pass.states)
            Append(techniques, {state.operation, state.index, state.value.type, state.value.value});
    }
    ++techniqueCount;
}

void EffectFile::AddContent(uint32_t object, const std::string& bytes)
{
    strings.push_back(object);
    Append(strings, Block(bytes));
    ++stringCount;
}

void EffectFile::AddResource(const Place& place, const std::string& bytes)
{
    Append(resources, {place.technique, place.index, place.element, place.state, place.usage});
    Append(resources, Block(bytes));
    ++resourceCount;
}

std::string EffectFile::Bytes() const
{
    Words file = {0xFEFF0901, Count(pool.size() * 4)};
    Append(file, pool);
    Append(file, {parameterCount, techniqueCount, 0, lastObject + 1});
    Append(file, parameters);
    Append(file, techniques);
    Append(file, {stringCount, resourceCount});
    Append(file, strings);
    Append(file, resources);
    return BytesOfWords(file);
}

// ---- Programs

namespace {

/// Writes a table's names and types behind its rows.
class TableWriter {
public:
    explicit TableWriter(const std::vector<TableConstant>& constants)
        : words(7 + constants.size() * 5)
    {
        const uint32_t creator = Text("test");
        const Words head = {28, creator, 0xFFFE0200, Count(constants.size()), 28, 0, Text("test")};
        std::copy(head.begin(), head.end(), words.begin());
        for (size_t i = 0; i < constants.size(); ++i) {
            const TableConstant& constant = constants[i];
            const uint32_t row[] = {Text(constant.name),
                                    constant.set | uint32_t{constant.firstRegister} << 16,
                                    constant.registerCount, Type(constant), 0};
            std::copy(std::begin(row), std::end(row),
                      words.begin() + static_cast<ptrdiff_t>(7 + i * 5));
        }
    }

    Words words;

private:
    uint32_t Put(const Words& next)
    {
        const uint32_t offset = Count(words.size() * 4);
        Append(words, next);
        return offset;
    }
    uint32_t Text(const std::string& text) { return Put(WordsOfBytes(text + '\0')); }
    uint32_t Type(const TableConstant& constant)
    {
        Words members;
        for (const TableConstant& member : constant.members)
            Append(members, {Text(member.name), Type(member)});
        const uint32_t first = members.empty() ? 0 : Put(members);
        return Put({constant.kind | static_cast<uint32_t>(constant.type) << 16,
                    constant.rows | uint32_t{constant.columns} << 16,
                    constant.elements | Count(constant.members.size()) << 16, first});
    }
};

} // namespace

std::vector<uint32_t> ProgramComment(const char* letters, const std::vector<uint32_t>& words)
{
    Words comment = {(Count(words.size()) + 1) << 16 | 0xFFFE};
    Append(comment, WordsOfBytes(letters));
    Append(comment, words);
    return comment;
}

std::vector<uint32_t> ConstantTableWords(const std::vector<TableConstant>& constants)
{
    return TableWriter(constants).words;
}

std::vector<uint32_t> ComputationWords(const std::vector<TableConstant>& inputs,
                                       const std::vector<double>& literals,
                                       uint32_t instructionCount,
                                       const std::vector<uint32_t>& instructions)
{
    Words program = {0x46580200};
    Append(program, ProgramComment("CTAB", ConstantTableWords(inputs)));
    const size_t filled = (literals.size() + 3) / 4 * 4;
    Words numbers = {Count(filled)};
    for (size_t i = 0; i < filled; ++i) {
        const auto bits = std::bit_cast<uint64_t>(i < literals.size() ? literals[i] : 0.0);
        Append(numbers, {static_cast<uint32_t>(bits), static_cast<uint32_t>(bits >> 32)});
    }
    Append(program, ProgramComment("CLIT", numbers));
    Words list = {instructionCount};
    Append(list, instructions);
    Append(program, ProgramComment("FXLC", list));
    program.push_back(0xFFFF);
    return program;
}

std::string ShaderBytes(const std::vector<uint32_t>& shader, const std::vector<uint32_t>& comments)
{
    Words words = {shader[0]};
    Append(words, comments);
    words.insert(words.end(), shader.begin() + 1, shader.end());
    return BytesOfWords(words);
}

const std::vector<uint32_t>& PlainVertexShader()
{
    static const std::vector<uint32_t> words = {0xFFFE0101, 0x0000001F, 0x80000000, 0x900F0000,
                                                0x00000001, 0xC00F0000, 0x90E40000, 0x0000FFFF};
    return words;
}

const std::vector<uint32_t>& PlainPixelShader()
{
    static const std::vector<uint32_t> words = {0xFFFF0200, 0x02000001, 0x800F0800, 0xA0E40000,
                                                0x0000FFFF};
    return words;
}
