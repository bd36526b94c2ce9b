#include "platform/headless/d3dx/effect/FxProgram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>

#include "platform/headless/d3dx/effect/FxCompiledWords.h"

namespace headless::fx {

namespace {

constexpr UINT kRegisterNumbers = 4;
/// More than the largest register file has; a larger place is a damaged one.
constexpr UINT kMaxPlaces = 1 << 16;
constexpr size_t kMaxSources = 8;
constexpr UINT kMaxComponents = 16;

double Dot(const double* values, size_t count)
{
    double sum = 0.0;
    for (size_t i = 0; i < count / 2; ++i)
        sum += values[i] * values[count / 2 + i];
    return sum;
}

double ReciprocalRoot(double value)
{
    return value == 0.0 ? std::numeric_limits<double>::infinity()
                        : 1.0 / std::sqrt(std::fabs(value));
}

double Logarithm(double value)
{
    return value == 0.0 ? 0.0 : std::log2(std::fabs(value));
}

} // namespace

/// An operation with its public number.
struct FxProgramOperation {
    uint16_t number;
    const char* name; ///< in listings
    uint8_t sources;
    bool takesAll; ///< one result from all components
    double (*compute)(const double* values, size_t count);
};

namespace {

using Values = const double*;

/// Division gives 0: no compiler emits it, and the system's effects compute it so.
constexpr FxProgramOperation kComputations[] = {
    {0x100, "mov", 1, false, [](Values v, size_t) { return v[0]; }},
    {0x101, "neg", 1, false, [](Values v, size_t) { return -v[0]; }},
    {0x103, "rcp", 1, false, [](Values v, size_t) { return 1.0 / v[0]; }},
    {0x104, "frc", 1, false, [](Values v, size_t) { return v[0] - std::floor(v[0]); }},
    {0x105, "exp", 1, false, [](Values v, size_t) { return std::exp2(v[0]); }},
    {0x106, "log", 1, false, [](Values v, size_t) { return Logarithm(v[0]); }},
    {0x107, "rsq", 1, false, [](Values v, size_t) { return ReciprocalRoot(v[0]); }},
    {0x108, "sin", 1, false, [](Values v, size_t) { return std::sin(v[0]); }},
    {0x109, "cos", 1, false, [](Values v, size_t) { return std::cos(v[0]); }},
    {0x10A, "asin", 1, false, [](Values v, size_t) { return std::asin(v[0]); }},
    {0x10B, "acos", 1, false, [](Values v, size_t) { return std::acos(v[0]); }},
    {0x10C, "atan", 1, false, [](Values v, size_t) { return std::atan(v[0]); }},
    {0x200, "min", 2, false, [](Values v, size_t) { return std::fmin(v[0], v[1]); }},
    {0x201, "max", 2, false, [](Values v, size_t) { return std::fmax(v[0], v[1]); }},
    {0x202, "lt", 2, false, [](Values v, size_t) { return v[0] < v[1] ? 1.0 : 0.0; }},
    {0x203, "ge", 2, false, [](Values v, size_t) { return v[0] >= v[1] ? 1.0 : 0.0; }},
    {0x204, "add", 2, false, [](Values v, size_t) { return v[0] + v[1]; }},
    {0x205, "mul", 2, false, [](Values v, size_t) { return v[0] * v[1]; }},
    {0x206, "atan2", 2, false, [](Values v, size_t) { return std::atan2(v[0], v[1]); }},
    {0x208, "div", 2, false, [](Values, size_t) { return 0.0; }},
    {0x300, "cmp", 3, false, [](Values v, size_t) { return v[0] >= 0.0 ? v[1] : v[2]; }},
    {0x500, "dot", 2, true, [](Values v, size_t count) { return Dot(v, count); }},
    {0x70E, "dotswiz", 6, true, [](Values v, size_t count) { return Dot(v, count); }},
    {0x70E, "dotswiz", 8, true, [](Values v, size_t count) { return Dot(v, count); }},
};

const FxProgramOperation* FindOperation(uint32_t number, uint32_t sources)
{
    for (const FxProgramOperation& row : kComputations)
        if (row.number == number && row.sources == sources)
            return &row;
    return nullptr;
}

bool IsOutput(FxProgramTable table)
{
    return table >= FxProgramTable::FloatOut && table <= FxProgramTable::WholeOut;
}

} // namespace

const char* FxProgramStep::Name() const
{
    return operation->name;
}

UINT FxProgramStep::ResultCount() const
{
    return operation->takesAll ? 1 : count;
}

// ---- Reading

/// The words of an instruction list.
class FxProgram::Words {
public:
    explicit Words(std::span<const DWORD> all) : words(all) {}

    bool Next(DWORD& wordOut)
    {
        if (position >= words.size())
            return false;
        wordOut = words[position++];
        return true;
    }
    size_t Left() const { return words.size() - position; }

private:
    std::span<const DWORD> words;
    size_t position = 0;
};

bool FxProgram::Read(std::span<const DWORD> code, const FxParameterNames& parameters,
                     size_t& rowsLeftInOut)
{
    std::vector<FxConstant> constants;
    const auto table = FxFindComment(code, "CTAB");
    if (table && !FxReadConstantTable(*table, rowsLeftInOut, constants))
        return false;
    const auto literals = FxFindComment(code, "CLIT");
    if (literals && !ReadLiterals(*literals))
        return false;
    const auto instructions = FxFindComment(code, "FXLC");
    if (!instructions || !ReadSteps(*instructions) ||
        !inputs.Bind(constants, parameters, rowsLeftInOut))
        return false;
    for (const FxNumberBinding& row : inputs.numbers)
        Need({FxProgramTable::Input, row.firstRegister * kRegisterNumbers},
             row.registerCount * kRegisterNumbers);
    return MakeTables(rowsLeftInOut);
}

/// A count and as many doubles, each of two words.
bool FxProgram::ReadLiterals(std::span<const DWORD> words)
{
    if (words.empty() || words[0] > (words.size() - 1) / 2)
        return false;
    std::vector<double>& literals = tables[static_cast<size_t>(FxProgramTable::Literal)];
    for (size_t i = 0; i < words[0]; ++i)
        literals.push_back(
            std::bit_cast<double>(uint64_t{words[1 + i * 2]} | uint64_t{words[2 + i * 2]} << 32));
    return true;
}

bool FxProgram::ReadSteps(std::span<const DWORD> code)
{
    Words words(code);
    DWORD count = 0;
    if (!words.Next(count) || count > words.Left())
        return false;
    steps.resize(count);
    return std::all_of(steps.begin(), steps.end(),
                       [&](FxProgramStep& step) { return ReadStep(words, step); });
}

bool FxProgram::ReadPlace(Words& words, FxProgramPlace& placeOut)
{
    DWORD table = 0;
    DWORD offset = 0;
    if (!words.Next(table) || !words.Next(offset) || table == 0 || table == 3 ||
        table >= kFxProgramTables || offset >= kMaxPlaces)
        return false;
    placeOut = {static_cast<FxProgramTable>(table), offset};
    return true;
}

bool FxProgram::ReadOperand(Words& words, FxProgramOperand& operandOut)
{
    DWORD isIndexed = 0;
    return words.Next(isIndexed) && (isIndexed == 0 || ReadPlace(words, operandOut.index)) &&
           ReadPlace(words, operandOut.place);
}

bool FxProgram::ReadStep(Words& words, FxProgramStep& stepOut)
{
    DWORD head = 0;
    DWORD sources = 0;
    if (!words.Next(head) || !words.Next(sources))
        return false;
    stepOut.operation = FindOperation(head >> 20 & 0x7FF, sources);
    stepOut.isFirstScalar = head >> 31 != 0;
    stepOut.count = head & 0xFFFF;
    if (!stepOut.operation || stepOut.count == 0 || stepOut.count > kMaxComponents)
        return false;
    stepOut.sources.resize(sources);
    for (FxProgramOperand& source : stepOut.sources) {
        if (!ReadOperand(words, source))
            return false;
        Need(source.place, stepOut.count);
        Need(source.index, 1);
    }
    FxProgramOperand target;
    if (!ReadOperand(words, target) || target.index.table != FxProgramTable::None)
        return false;
    stepOut.target = target.place;
    Need(stepOut.target, stepOut.ResultCount());
    NoteWritten(stepOut.target, stepOut.ResultCount());
    return stepOut.target.table >= FxProgramTable::FloatOut;
}

/// The literals have their size already; what is read behind them is 0.
void FxProgram::Need(const FxProgramPlace& place, UINT count)
{
    if (place.table == FxProgramTable::None || place.table == FxProgramTable::Literal)
        return;
    size_t& needed = registers[static_cast<size_t>(place.table)];
    const size_t end = size_t{place.offset} + count;
    needed = std::max(needed, (end + kRegisterNumbers - 1) / kRegisterNumbers);
}

bool FxProgram::MakeTables(size_t& rowsLeftInOut)
{
    for (size_t i = 0; i < kFxProgramTables; ++i) {
        if (registers[i] > rowsLeftInOut)
            return false;
        rowsLeftInOut -= registers[i];
        tables[i].resize(std::max(tables[i].size(), registers[i] * kRegisterNumbers));
    }
    return true;
}

void FxProgram::NoteWritten(const FxProgramPlace& place, UINT count)
{
    if (!IsOutput(place.table))
        return;
    std::vector<UINT>& places = written[static_cast<size_t>(place.table)];
    for (UINT i = place.offset / kRegisterNumbers; i * kRegisterNumbers < place.offset + count;
         ++i) {
        const auto at = std::lower_bound(places.begin(), places.end(), i);
        if (at == places.end() || *at != i)
            places.insert(at, i);
    }
}

// ---- Running

double FxProgram::Number(FxProgramTable table, size_t offset) const
{
    const std::vector<double>& numbers = tables[static_cast<size_t>(table)];
    return offset < numbers.size() ? numbers[offset] : 0.0;
}

double FxProgram::Output(FxProgramTable table, UINT offset) const
{
    return Number(table, offset);
}

/// An index beyond the end wraps around: that of an input at the next power of two, where a register
/// beyond the end is 0.
double FxProgram::Source(const FxProgramOperand& operand, UINT component) const
{
    const FxProgramTable table = operand.place.table;
    size_t offset = operand.place.offset + component;
    const size_t count =
        (tables[static_cast<size_t>(table)].size() + kRegisterNumbers - 1) / kRegisterNumbers;
    if (operand.index.table != FxProgramTable::None && count > 0) {
        const double index = Number(operand.index.table, operand.index.offset);
        const auto moved = static_cast<uint32_t>(FxTruncate(std::nearbyint(index)));
        const uint32_t place = static_cast<uint32_t>(offset / kRegisterNumbers) + moved;
        const size_t wrap = table == FxProgramTable::Input ? std::bit_ceil(count) : count;
        const size_t wrapped = place < count ? place : place % wrap;
        offset = wrapped * kRegisterNumbers + offset % kRegisterNumbers;
    }
    return Number(table, offset);
}

void FxProgram::Store(const FxProgramPlace& place, UINT component, double value)
{
    double stored = static_cast<double>(static_cast<float>(value));
    if (place.table == FxProgramTable::WholeOut)
        stored = std::nearbyint(value);
    else if (place.table == FxProgramTable::TruthOut)
        stored = value != 0.0 ? 1.0 : 0.0;
    tables[static_cast<size_t>(place.table)][place.offset + component] = stored;
}

void FxProgram::RunStep(const FxProgramStep& step)
{
    const auto source = [&](size_t i, UINT component) {
        return Source(step.sources[i], step.isFirstScalar && i == 0 ? 0 : component);
    };
    if (step.operation->takesAll) {
        double values[kMaxSources * kMaxComponents];
        size_t count = 0;
        for (size_t i = 0; i < step.sources.size(); ++i)
            for (UINT c = 0; c < step.count; ++c)
                values[count++] = source(i, c);
        Store(step.target, 0, step.operation->compute(values, count));
        return;
    }
    for (UINT c = 0; c < step.count; ++c) {
        double values[kMaxSources];
        for (size_t i = 0; i < step.sources.size(); ++i)
            values[i] = source(i, c);
        Store(step.target, c, step.operation->compute(values, step.sources.size()));
    }
}

void FxProgram::Run()
{
    std::vector<double>& input = tables[static_cast<size_t>(FxProgramTable::Input)];
    for (const FxNumberBinding& row : inputs.numbers)
        for (UINT i = 0; i < row.registerCount; ++i)
            for (UINT c = 0; c < kRegisterNumbers; ++c)
                input[(row.firstRegister + i) * kRegisterNumbers + c] =
                    static_cast<double>(std::bit_cast<float>(row.Value(i, c, D3DXPT_FLOAT)));
    for (const FxProgramStep& step : steps)
        RunStep(step);
}

FxNumber FxProgram::Evaluate(const FxShape& shape)
{
    Run();
    FxNumber number;
    number.shape = shape;
    for (UINT i = 0; i < shape.Count(); ++i)
        number.cells[i] =
            FxCellOfFloat(static_cast<float>(Output(FxProgramTable::FloatOut, i)), shape.type);
    return number;
}

} // namespace headless::fx
