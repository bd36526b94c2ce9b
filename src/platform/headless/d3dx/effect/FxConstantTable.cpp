#include "platform/headless/d3dx/effect/FxConstantTable.h"

#include <algorithm>

#include "platform/headless/d3dx/effect/FxCompiledWords.h"
#include "platform/headless/d3dx/effect/FxLimits.h"

namespace headless::fx {

namespace {

/// Reads the types of a table, which refer to one another by offsets.
class TableReader {
public:
    TableReader(std::span<const DWORD> words, size_t& rowsLeftInOut)
        : table(words),
          rowsLeft(rowsLeftInOut)
    {}

    bool Read(std::vector<FxConstant>& constantsOut)
    {
        constexpr size_t kCountAt = 12, kFirstAt = 16, kRowBytes = 20;
        DWORD count = 0, first = 0;
        if (!Word(kCountAt, count) || !Word(kFirstAt, first) || count > table.size())
            return false;
        for (size_t i = 0; i < count; ++i)
            if (!Constant(first + i * kRowBytes, constantsOut.emplace_back()))
                return false;
        return true;
    }

private:
    bool Word(size_t offset, DWORD& valueOut) const
    {
        if (offset % 4 != 0 || offset / 4 >= table.size())
            return false;
        valueOut = table[offset / 4];
        return true;
    }
    bool Halves(size_t offset, UINT& lowOut, UINT& highOut) const
    {
        DWORD word = 0;
        if (!Word(offset, word))
            return false;
        lowOut = word & 0xFFFF;
        highOut = word >> 16;
        return true;
    }
    bool Name(size_t offset, std::string& nameOut) const
    {
        DWORD at = 0;
        if (!Word(offset, at))
            return false;
        std::optional<std::string> text = FxTextAt(table, at);
        if (text)
            nameOut = std::move(*text);
        return text.has_value();
    }

    bool Constant(size_t at, FxConstant& constantOut)
    {
        UINT set = 0, reserved = 0;
        DWORD type = 0;
        if (!Name(at, constantOut.name) || !Halves(at + 4, set, constantOut.firstRegister) ||
            !Halves(at + 8, constantOut.registerCount, reserved) || !Word(at + 12, type) ||
            set > static_cast<UINT>(FxRegisterSet::Sampler))
            return false;
        constantOut.set = static_cast<FxRegisterSet>(set);
        return Type(type, 1, constantOut.type);
    }

    bool Type(size_t at, int depth, FxConstantType& typeOut)
    {
        UINT kind = 0, type = 0, memberCount = 0;
        DWORD first = 0;
        if (rowsLeft == 0 || depth > kFxMaxStructDepth || !Halves(at, kind, type) ||
            !Halves(at + 4, typeOut.rows, typeOut.columns) ||
            !Halves(at + 8, typeOut.elements, memberCount) || !Word(at + 12, first) ||
            kind > D3DXPC_STRUCT ||
            (kind < D3DXPC_OBJECT && (typeOut.rows > 4 || typeOut.columns > 4)))
            return false;
        --rowsLeft;
        typeOut.kind = static_cast<D3DXPARAMETER_CLASS>(kind);
        typeOut.elements = std::max(typeOut.elements, 1u);
        for (size_t i = 0; typeOut.kind == D3DXPC_STRUCT && i < memberCount; ++i) {
            FxConstantType::Member& member = typeOut.members.emplace_back();
            DWORD memberType = 0;
            if (!Name(first + i * 8, member.name) || !Word(first + i * 8 + 4, memberType) ||
                !Type(memberType, depth + 1, member.type))
                return false;
        }
        return true;
    }

    std::span<const DWORD> table;
    size_t& rowsLeft;
};

/// Gives the leaves of a constant its registers one after another.
class Binder {
public:
    Binder(const FxConstant& constant, FxProgramInputs& target, size_t& rowsLeftInOut)
        : inputs(target),
          rowsLeft(rowsLeftInOut),
          set(constant.set),
          next(constant.firstRegister),
          end(constant.firstRegister + constant.registerCount)
    {}

    /// False if no row is left.
    bool Bind(const FxConstantType& type, const FxParameter& parameter)
    {
        const UINT count = std::min(type.elements, std::max(parameter.elements, 1u));
        for (UINT i = 0; i < count && next < end; ++i)
            if (!BindOne(type, parameter.IsArray() ? *parameter.parts[i] : parameter))
                return false;
        return true;
    }

private:
    bool BindOne(const FxConstantType& type, const FxParameter& parameter)
    {
        if (type.kind == D3DXPC_STRUCT)
            return BindMembers(type, parameter);
        const size_t rows = 1 + parameter.samplerStates.size();
        if (rowsLeft < rows)
            return false;
        rowsLeft -= rows;
        const UINT count = std::min(RegistersOfOne(type), end - next);
        if (set == FxRegisterSet::Sampler) {
            if (parameter.IsSampler())
                inputs.samplers.push_back({&parameter, next});
        } else if (parameter.IsNumeric()) {
            const bool isTransposed =
                type.kind != parameter.kind &&
                (type.kind == D3DXPC_MATRIX_COLUMNS || parameter.kind == D3DXPC_MATRIX_COLUMNS);
            inputs.numbers.push_back({&parameter, set, next, count, isTransposed});
        }
        next += count;
        return true;
    }

    /// Members without a counterpart in the effect keep their registers.
    bool BindMembers(const FxConstantType& type, const FxParameter& parameter)
    {
        for (size_t i = 0; i < type.members.size(); ++i) {
            const FxConstantType::Member& member = type.members[i];
            const FxParameter* part = nullptr;
            if (!FindPart(parameter, member.name, i, part) || (part && !Bind(member.type, *part)))
                return false;
            if (!part)
                next = std::min(next + RegistersOf(member.type), end);
        }
        return true;
    }

    /// Most often it is at its place; a search takes rows, so that a damaged file cannot make many long ones.
    bool FindPart(const FxParameter& parameter, const std::string& name, size_t place,
                  const FxParameter*& partOut)
    {
        if (place < parameter.parts.size() && parameter.parts[place]->name == name) {
            partOut = parameter.parts[place].get();
            return true;
        }
        partOut = FxFindByName(parameter.parts, name);
        const size_t rows = parameter.parts.size() / 16;
        const bool isLeft = rows <= rowsLeft;
        rowsLeft -= isLeft ? rows : 0;
        return isLeft;
    }

    UINT RegistersOfOne(const FxConstantType& type) const
    {
        if (set == FxRegisterSet::Sampler || type.kind == D3DXPC_OBJECT)
            return 1;
        if (set == FxRegisterSet::Truth)
            return type.rows * type.columns;
        switch (type.kind) {
        case D3DXPC_MATRIX_ROWS:
            return type.rows;
        case D3DXPC_MATRIX_COLUMNS:
            return type.columns;
        default:
            return 1;
        }
    }

    UINT RegistersOf(const FxConstantType& type) const
    {
        UINT one = 0;
        if (type.kind != D3DXPC_STRUCT)
            one = RegistersOfOne(type);
        for (const FxConstantType::Member& member : type.members)
            one += std::min(RegistersOf(member.type), end);
        return static_cast<UINT>(std::min<uint64_t>(uint64_t{one} * type.elements, end));
    }

    FxProgramInputs& inputs;
    size_t& rowsLeft;
    FxRegisterSet set;
    UINT next;
    UINT end;
};

} // namespace

bool FxReadConstantTable(std::span<const DWORD> table, size_t& rowsLeftInOut,
                         std::vector<FxConstant>& constantsOut)
{
    return TableReader(table, rowsLeftInOut).Read(constantsOut);
}

FxCell FxNumberBinding::Value(UINT registerIndex, UINT component, D3DXPARAMETER_TYPE as) const
{
    const FxShape shape = parameter->Shape();
    UINT row = isTransposed ? component : registerIndex;
    UINT column = isTransposed ? registerIndex : component;
    if (set == FxRegisterSet::Truth) { // a register of its own for each number
        row = registerIndex / shape.columns;
        column = registerIndex % shape.columns;
    }
    if (row >= shape.rows || column >= shape.columns)
        return 0;
    return FxConvert(parameter->Cells()[row * shape.columns + column], parameter->type, as);
}

bool FxProgramInputs::Bind(const std::vector<FxConstant>& constants,
                           const FxParameterNames& parameters, size_t& rowsLeftInOut)
{
    for (const FxConstant& constant : constants) {
        const auto found = parameters.find(constant.name);
        if (found != parameters.end() &&
            !Binder(constant, *this, rowsLeftInOut).Bind(constant.type, *found->second))
            return false;
    }
    return true;
}

bool FxProgramInputs::Reads(const FxParameter& parameter) const
{
    const auto isIt = [&](const FxParameter& read) { return read.storage == parameter.storage; };
    return std::any_of(numbers.begin(), numbers.end(),
                       [&](const FxNumberBinding& row) { return isIt(*row.parameter); }) ||
           std::any_of(samplers.begin(), samplers.end(), [&](const FxSamplerBinding& row) {
               return isIt(*row.sampler) || FxSamplerReads(*row.sampler, parameter);
           });
}

uint64_t FxProgramInputs::Newest() const
{
    uint64_t newest = 0;
    for (const FxNumberBinding& row : numbers)
        newest = std::max(newest, row.parameter->storage->changed);
    for (const FxSamplerBinding& row : samplers)
        newest = std::max(newest, FxSamplerNewest(*row.sampler));
    return newest;
}

} // namespace headless::fx
