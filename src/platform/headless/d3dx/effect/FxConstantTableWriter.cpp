// Constant tables of the programs that are written.

#include <algorithm>

#include "platform/headless/d3dx/effect/FxCompiledWords.h"
#include "platform/headless/d3dx/effect/FxProgramWriter.h"

namespace headless::fx {

namespace {

constexpr DWORD kHeadBytes = 28, kRowWords = 5;

/// Names and types lie behind the rows.
class TableWriter {
public:
    explicit TableWriter(const std::vector<std::pair<const FxParameter*, UINT>>& rows)
        : words(kHeadBytes / 4 + rows.size() * kRowWords)
    {
        const DWORD creator = Text("QSA2QSB");
        const DWORD head[] = {kHeadBytes, creator, 0x46580200,    static_cast<DWORD>(rows.size()),
                              kHeadBytes, 0,       Text("fx_2_0")};
        std::copy(std::begin(head), std::end(head), words.begin());
        for (size_t i = 0; i < rows.size(); ++i) {
            const auto& [parameter, place] = rows[i];
            const DWORD name = Text(parameter->name), type = Type(*parameter);
            const DWORD row[] = {name, static_cast<DWORD>(FxRegisterSet::Float) | place << 16,
                                 FxRegistersOf(*parameter), type, 0};
            std::copy(std::begin(row), std::end(row),
                      words.begin() + static_cast<ptrdiff_t>(kHeadBytes / 4 + i * kRowWords));
        }
    }

    std::vector<DWORD> words;

private:
    DWORD Put(const std::vector<DWORD>& next)
    {
        const auto offset = static_cast<DWORD>(words.size() * 4);
        words.insert(words.end(), next.begin(), next.end());
        return offset;
    }
    DWORD Text(std::string text)
    {
        text.resize(text.size() / 4 * 4 + 4); // at least one end mark
        return Put(FxWordsOf(text));
    }
    DWORD Type(const FxParameter& parameter)
    {
        const FxParameter& one = parameter.IsArray() ? *parameter.parts[0] : parameter;
        std::vector<DWORD> members;
        for (const auto& member : one.parts) {
            const DWORD name = Text(member->name);
            members.insert(members.end(), {name, Type(*member)});
        }
        const DWORD first = members.empty() ? 0 : Put(members);
        const UINT elements = std::max(parameter.elements, 1u);
        return Put({static_cast<DWORD>(one.kind) | static_cast<DWORD>(one.type) << 16,
                    std::max(one.rows, 1u) | one.columns << 16,
                    elements | static_cast<DWORD>(one.parts.size()) << 16, first});
    }
};

} // namespace

UINT FxRegistersOf(const FxParameter& parameter)
{
    if (parameter.IsNumeric())
        return parameter.rows * std::max(parameter.elements, 1u);
    UINT sum = 0;
    for (const auto& part : parameter.parts)
        sum += FxRegistersOf(*part);
    return sum;
}

std::vector<DWORD>
FxWriteConstantTable(const std::vector<std::pair<const FxParameter*, UINT>>& rows)
{
    return TableWriter(rows).words;
}

void FxAppendComment(std::vector<DWORD>& code, std::string_view letters,
                     const std::vector<DWORD>& words)
{
    code.push_back(static_cast<DWORD>(words.size() + 1) << 16 | 0xFFFE);
    code.push_back(FxCompiledWords::WordAt(letters, 0));
    code.insert(code.end(), words.begin(), words.end());
}

} // namespace headless::fx
