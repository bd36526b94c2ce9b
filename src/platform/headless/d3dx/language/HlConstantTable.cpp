// The table that tells which parameters go to which registers.

#include <algorithm>
#include <string>

#include "platform/headless/d3dx/language/HlWriter.h"

#include <d3dx9.h>

namespace headless::hl {

namespace {

constexpr uint32_t kHeadBytes = 28, kRowBytes = 20;
constexpr uint32_t kTruthSet = 0, kWholeSet = 1, kFloatSet = 2, kSamplerSet = 3;

class Table {
public:
    std::vector<shader::Word> words;

    uint32_t Put(const std::vector<shader::Word>& next)
    {
        const auto offset = static_cast<uint32_t>(words.size() * 4);
        words.insert(words.end(), next.begin(), next.end());
        return offset;
    }

    /// With at least one end mark.
    uint32_t Text(std::string_view text)
    {
        std::vector<shader::Word> packed(text.size() / 4 + 1);
        for (size_t i = 0; i < text.size(); ++i)
            packed[i / 4] |= static_cast<shader::Word>(static_cast<unsigned char>(text[i]))
                             << (i % 4 * 8);
        return Put(packed);
    }

    uint32_t Type(const HlType& type)
    {
        uint32_t elements = 1;
        const HlType* one = &type;
        for (; one->kind == HlKind::Array; one = one->element)
            elements *= one->count;
        if (one->kind == HlKind::Struct)
            return Struct(*one, elements);
        static constexpr shader::Word kTypes[] = {D3DXPT_BOOL, D3DXPT_INT, D3DXPT_FLOAT};
        static constexpr shader::Word kSamplers[] = {D3DXPT_SAMPLER, D3DXPT_SAMPLER1D,
                                                     D3DXPT_SAMPLER2D, D3DXPT_SAMPLERCUBE,
                                                     D3DXPT_SAMPLER3D};
        const bool isSampler = one->kind == HlKind::Sampler;
        const shader::Word kind = isSampler                     ? D3DXPC_OBJECT
                                  : one->form == HlForm::Scalar ? D3DXPC_SCALAR
                                  : one->form == HlForm::Vector ? D3DXPC_VECTOR
                                  : one->isColumnMajor          ? D3DXPC_MATRIX_COLUMNS
                                                                : D3DXPC_MATRIX_ROWS;
        const shader::Word cell = isSampler ? kSamplers[static_cast<size_t>(one->sampler)]
                                            : kTypes[static_cast<size_t>(one->base)];
        return Put({kind | cell << 16, one->rows | shader::Word{one->columns} << 16, elements, 0});
    }

private:
    uint32_t Struct(const HlType& type, uint32_t elements)
    {
        std::vector<shader::Word> members;
        for (const HlMember& member : type.structure->members) {
            const uint32_t name = Text(member.name);
            const uint32_t memberType = Type(*member.type);
            members.insert(members.end(), {name, memberType});
        }
        const auto count = static_cast<shader::Word>(type.structure->members.size());
        const uint32_t first = Put(members);
        return Put(
            {shader::Word{D3DXPC_STRUCT}, 1 | type.cells << 16, elements | count << 16, first});
    }
};

struct Row {
    const HlUniform* uniform;
    uint32_t set, place, count;
};

} // namespace

std::vector<shader::Word> HlWriteConstantTable(const HlConstants& constants,
                                               const HlProfile& profile)
{
    std::vector<Row> rows;
    for (const HlUniform& uniform : constants.Uniforms()) {
        if (uniform.countsRounds)
            rows.push_back({&uniform, kWholeSet, uniform.wholePlace, 1});
        if (uniform.used > 0)
            rows.push_back({&uniform, uniform.isSampler ? kSamplerSet : kFloatSet, uniform.place,
                            uniform.used});
    }
    static_cast<void>(kTruthSet);
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
        return a.uniform->variable->name < b.uniform->variable->name;
    });
    Table table;
    table.words.resize((kHeadBytes + rows.size() * kRowBytes) / 4);
    const auto count = static_cast<uint32_t>(rows.size());
    const uint32_t creator = table.Text("QSA2QSB"), target = table.Text(profile.name);
    const shader::Word head[] = {kHeadBytes, creator, profile.version, count,
                                 kHeadBytes, 0,       target};
    std::copy(std::begin(head), std::end(head), table.words.begin());
    for (size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        const uint32_t name = table.Text(row.uniform->variable->name);
        const uint32_t type = table.Type(*row.uniform->variable->type);
        const shader::Word next[] = {name, row.set | row.place << 16, row.count, type, 0};
        std::copy(std::begin(next), std::end(next),
                  table.words.begin() + static_cast<ptrdiff_t>((kHeadBytes + i * kRowBytes) / 4));
    }
    return table.words;
}

} // namespace headless::hl
