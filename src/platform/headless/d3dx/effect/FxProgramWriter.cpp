#include "platform/headless/d3dx/effect/FxProgramWriter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

#include "platform/headless/d3dx/effect/FxParameter.h"

namespace headless::fx {

namespace {

constexpr DWORD kProgramVersion = 0x46580200; // "FX", 2.0
constexpr DWORD kEnd = 0xFFFF;
/// A longer array is not chosen from by comparing the index with each number.
constexpr UINT kMostChoices = 64;

void AddWholes(const FxParameter& part, const FxParameter& whole, FxVisibleParameters& visible)
{
    visible.wholes.emplace(&part, &whole);
    for (const auto& inner : part.parts)
        AddWholes(*inner, whole, visible);
}

/// Numbers of a parameter with all its parts.
size_t CellsOf(const FxParameter& parameter)
{
    if (parameter.IsNumeric())
        return parameter.ValueCount();
    size_t sum = 0;
    for (const auto& part : parameter.parts)
        sum += CellsOf(*part);
    return sum;
}

} // namespace

FxVisibleParameters::FxVisibleParameters(
    const std::vector<std::unique_ptr<FxParameter>>& parameters)
{
    for (const auto& parameter : parameters)
        AddWholes(*parameter, *parameter, *this);
}

bool FxProgramWriter::Fail(const std::string& what)
{
    reason = what;
    return false;
}

bool FxProgramWriter::Write(const FxExpression& expression, std::vector<DWORD>& codeOut,
                            std::string& reasonOut)
{
    const bool isDone = Steps(expression);
    if (isDone)
        Finish(codeOut);
    reasonOut = reason;
    return isDone;
}

bool FxProgramWriter::WriteColour(const FxExpression& expression, std::vector<DWORD>& codeOut,
                                  std::string& reasonOut)
{
    const bool isDone = Steps(expression);
    if (isDone) {
        const Value colour = Pop();
        stack.push_back({{D3DXPT_INT, 1, 1}, {Packed(colour)}});
        Finish(codeOut);
    }
    reasonOut = reason;
    return isDone;
}

bool FxProgramWriter::Steps(const FxExpression& expression)
{
    for (const FxStep& step : expression.Steps())
        if (!Step(expression, step))
            return false;
    return true;
}

/// Alpha of 128 and more makes the number negative, as its highest bit does.
FxProgramWriter::Place FxProgramWriter::Packed(const Value& colour)
{
    const auto level = [this](const Place& share) {
        const Place held = Emit(0x200, {Emit(0x201, {share, Literal(0.0)}), Literal(1.0)});
        return Floor(Sum({Product(held, Literal(255.0)), Literal(0.5)}));
    };
    const Place red = Product({level(colour.cells[0]), Literal(65536.0)});
    const Place green = Product({level(colour.cells[1]), Literal(256.0)});
    const Place low = Sum({Sum(red, green), level(colour.cells[2])});
    if (colour.cells.size() < 4)
        return low;
    const Place alpha = level(colour.cells[3]);
    const Place isHigh = Emit(0x203, {alpha, Literal(128.0)});
    const Place high = Difference(alpha, Product(isHigh, Literal(256.0)));
    return Sum(Product(high, Literal(16777216.0)), low);
}

/// How many numbers from one on lie side by side in one register, as they do in the result.
UINT FxProgramWriter::RunOf(const Value& value, UINT first)
{
    const Place& start = value.cells[first];
    UINT count = 1;
    while (first + count < value.cells.size() && first % 4 + count < 4 &&
           start.offset % 4 + count < 4 && value.cells[first + count].table == start.table &&
           value.cells[first + count].offset == start.offset + count)
        ++count;
    return count;
}

void FxProgramWriter::Finish(std::vector<DWORD>& codeOut)
{
    const Value result = Pop();
    for (UINT i = 0, count = 0; i < result.cells.size(); i += count) {
        count = RunOf(result, i);
        ++instructionCount;
        instructions.insert(instructions.end(),
                            {0x100u << 20 | count, 1, 0, static_cast<DWORD>(result.cells[i].table),
                             result.cells[i].offset, 0,
                             static_cast<DWORD>(FxProgramTable::FloatOut), i});
    }
    // By registers: an order by addresses would be another in each run.
    std::vector<std::pair<const FxParameter*, UINT>> rows(inputs.begin(), inputs.end());
    std::sort(rows.begin(), rows.end(),
              [](const auto& a, const auto& b) { return a.second < b.second; });
    codeOut = {kProgramVersion};
    FxAppendComment(codeOut, "CTAB", FxWriteConstantTable(rows));
    std::vector<DWORD> numbers = {static_cast<DWORD>((literals.size() + 3) / 4 * 4)};
    literals.resize(numbers[0]);
    for (const double literal : literals) {
        const auto bits = std::bit_cast<uint64_t>(literal);
        numbers.insert(numbers.end(), {static_cast<DWORD>(bits), static_cast<DWORD>(bits >> 32)});
    }
    FxAppendComment(codeOut, "CLIT", numbers);
    instructions.insert(instructions.begin(), instructionCount);
    FxAppendComment(codeOut, "FXLC", instructions);
    codeOut.push_back(kEnd);
}

FxProgramWriter::Value FxProgramWriter::Pop()
{
    Value value = std::move(stack.back());
    stack.pop_back();
    return value;
}

// ---- Operands

FxProgramWriter::Place FxProgramWriter::Literal(double value)
{
    const auto known = std::find_if(literals.begin(), literals.end(), [value](double literal) {
        return std::bit_cast<uint64_t>(literal) == std::bit_cast<uint64_t>(value);
    });
    const auto at = static_cast<UINT>(known - literals.begin());
    if (known == literals.end())
        literals.push_back(value);
    return {FxProgramTable::Literal, at};
}

FxProgramWriter::Value FxProgramWriter::LiteralValue(const FxNumber& number)
{
    Value value = {number.shape, {}};
    for (UINT i = 0; i < number.shape.Count(); ++i)
        value.cells.push_back(Literal(number.shape.type == D3DXPT_INT
                                          ? static_cast<double>(number.Int(i))
                                          : static_cast<double>(number.Float(i))));
    return value;
}

/// The first register of a part: wholes have theirs in the order of their first use.
UINT FxProgramWriter::RegisterOf(const FxParameter& part)
{
    const FxParameter& whole = *parameters.wholes.at(&part);
    const auto [found, isNew] = inputs.try_emplace(&whole, inputRegisters);
    if (isNew)
        inputRegisters += FxRegistersOf(whole);
    UINT at = found->second;
    const FxParameter* around = &whole;
    while (around != &part) {
        for (const auto& inner : around->parts) {
            const bool isIn = inner.get() == &part ||
                              (inner->storage == part.storage && inner->first <= part.first &&
                               part.first < inner->first + CellsOf(*inner));
            if (isIn) {
                around = inner.get();
                break;
            }
            at += FxRegistersOf(*inner);
        }
    }
    return at;
}

/// One that callers cannot see never changes.
FxProgramWriter::Value FxProgramWriter::Load(const FxParameter& parameter)
{
    if (!parameters.Has(parameter)) {
        FxNumber number;
        number.shape = parameter.Shape();
        std::copy_n(parameter.Cells(), number.shape.Count(), number.cells.begin());
        return LiteralValue(number);
    }
    Value value = {parameter.Shape(), {}};
    const UINT first = RegisterOf(parameter);
    for (UINT row = 0; row < parameter.rows; ++row)
        for (UINT column = 0; column < parameter.columns; ++column)
            value.cells.push_back({FxProgramTable::Input, (first + row) * 4 + column});
    return value;
}

/// The number whose place the index gives, clamped to what there is.
FxProgramWriter::Place FxProgramWriter::Choice(const Place& index, const std::vector<Place>& among)
{
    Place chosen = among.back();
    for (size_t i = among.size() - 1; i-- > 0;)
        chosen =
            Emit(0x300, {Difference(Literal(static_cast<double>(i)), index), among[i], chosen});
    return chosen;
}

bool FxProgramWriter::Element(const FxStep& step)
{
    const FxParameter& array = *step.parameter;
    if (array.elements > kMostChoices)
        return Fail("an array of more than 64 elements is read by an index");
    const Value index = Pop();
    const Place at = Converted(index.cells[0], index.shape.type, D3DXPT_INT);
    std::vector<Value> elements;
    for (const auto& element : array.parts)
        elements.push_back(Load(*element));
    Value value = {step.shape, {}};
    for (UINT i = 0; i < step.shape.Count(); ++i) {
        std::vector<Place> among;
        for (const Value& element : elements)
            among.push_back(element.cells[i]);
        value.cells.push_back(Choice(at, among));
    }
    stack.push_back(std::move(value));
    return true;
}

bool FxProgramWriter::Row(const FxStep& step)
{
    const Value index = Pop(), whole = Pop();
    const Place at = Converted(index.cells[0], index.shape.type, D3DXPT_INT);
    const UINT count = whole.shape.rows == 1 ? whole.shape.columns : whole.shape.rows;
    Value value = {step.shape, {}};
    for (UINT i = 0; i < step.shape.Count(); ++i) {
        std::vector<Place> among;
        for (UINT row = 0; row < count; ++row)
            among.push_back(whole.cells[row * step.shape.Count() + i]);
        value.cells.push_back(Choice(at, among));
    }
    stack.push_back(std::move(value));
    return true;
}

// ---- Operations

/// One number into the next temporary.
FxProgramWriter::Place FxProgramWriter::Emit(unsigned operation, const std::vector<Place>& sources)
{
    ++instructionCount;
    instructions.insert(instructions.end(),
                        {operation << 20 | 1, static_cast<DWORD>(sources.size())});
    for (const Place& source : sources)
        instructions.insert(instructions.end(),
                            {0, static_cast<DWORD>(source.table), source.offset});
    const Place target = {FxProgramTable::Temporary, temporaries++};
    instructions.insert(instructions.end(), {0, static_cast<DWORD>(target.table), target.offset});
    return target;
}

/// Towards 0.
FxProgramWriter::Place FxProgramWriter::Whole(const Place& a)
{
    return Emit(0x300, {a, Floor(a), Negated(Floor(Negated(a)))});
}

FxProgramWriter::Place FxProgramWriter::Root(const Place& a)
{
    const Place root = Product(a, Emit(0x107, {a}));
    return Emit(0x300, {Negated(Same(a, Literal(0.0))), root, Literal(0.0)});
}

FxProgramWriter::Place FxProgramWriter::Dot(const Value& a, const Value& b)
{
    Place sum = Product(a.At(0), b.At(0));
    for (UINT i = 1; i < std::max(a.cells.size(), b.cells.size()); ++i)
        sum = Sum(sum, Product(a.At(i), b.At(i)));
    return sum;
}

FxProgramWriter::Place FxProgramWriter::Converted(const Place& a, D3DXPARAMETER_TYPE from,
                                                  D3DXPARAMETER_TYPE to)
{
    if (from == to || from == D3DXPT_BOOL || to == D3DXPT_FLOAT)
        return a;
    return to == D3DXPT_BOOL ? Truth(a) : Whole(a);
}

FxProgramWriter::Place FxProgramWriter::Compute(FxOperation operation, const Place& a,
                                                const Place& b)
{
    switch (operation) {
    case FxOperation::Or:
        return Emit(0x201, {Truth(a), Truth(b)});
    case FxOperation::And:
        return Product({Truth(a), Truth(b)});
    case FxOperation::Equal:
        return Same(a, b);
    case FxOperation::NotEqual:
        return Opposite(Same(a, b));
    case FxOperation::Less:
        return Emit(0x202, {a, b});
    case FxOperation::LessEqual:
        return Emit(0x203, {b, a});
    case FxOperation::Greater:
        return Emit(0x202, {b, a});
    case FxOperation::GreaterEqual:
        return Emit(0x203, {a, b});
    case FxOperation::Add:
        return Sum(a, b);
    case FxOperation::Subtract:
        return Difference(a, b);
    case FxOperation::Multiply:
        return Product(a, b);
    case FxOperation::Divide:
        return Quotient(a, b);
    default: // the rest of a division
        return Difference(a, Product(b, Whole(Quotient(a, b))));
    }
}

bool FxProgramWriter::Binary(const FxStep& step)
{
    const bool isBitwise =
        step.operation == FxOperation::BitOr || step.operation == FxOperation::BitXor ||
        step.operation == FxOperation::BitAnd || step.operation == FxOperation::ShiftLeft ||
        step.operation == FxOperation::ShiftRight;
    if (isBitwise)
        return Fail("an operation on bits has an operand that changes");
    const Value b = Pop(), a = Pop();
    Value value = {step.shape, {}};
    for (UINT i = 0; i < step.shape.Count(); ++i) {
        Place result = Compute(step.operation, a.At(i), b.At(i));
        if (step.shape.type == D3DXPT_INT && step.operation == FxOperation::Divide)
            result = Whole(result);
        value.cells.push_back(result);
    }
    stack.push_back(std::move(value));
    return true;
}

// Kept whole: one case for each operation.
bool FxProgramWriter::Step(const FxExpression& expression, const FxStep& step)
{
    Value value = {step.shape, {}};
    switch (step.operation) {
    case FxOperation::Literal:
        value = LiteralValue(expression.Literal(step));
        break;
    case FxOperation::Parameter:
        value = Load(*step.parameter);
        break;
    case FxOperation::Element:
        return Element(step);
    case FxOperation::Row:
        return Row(step);
    case FxOperation::Negate:
    case FxOperation::Not: {
        const Value a = Pop();
        for (const Place& cell : a.cells)
            value.cells.push_back(step.operation == FxOperation::Negate ? Negated(cell)
                                                                        : Opposite(Truth(cell)));
        break;
    }
    case FxOperation::Choose: {
        const Value no = Pop(), yes = Pop(), condition = Pop();
        for (UINT i = 0; i < step.shape.Count(); ++i)
            value.cells.push_back(
                Emit(0x300, {Negated(Truth(condition.At(i))),
                             Converted(no.At(i), no.shape.type, step.shape.type),
                             Converted(yes.At(i), yes.shape.type, step.shape.type)}));
        break;
    }
    case FxOperation::Convert: {
        const Value a = Pop();
        const bool isFlat = a.shape.IsScalar() || a.shape.columns <= step.shape.columns;
        for (UINT row = 0; row < step.shape.rows; ++row)
            for (UINT column = 0; column < step.shape.columns; ++column)
                value.cells.push_back(
                    Converted(a.At(row * (isFlat ? step.shape.columns : a.shape.columns) + column),
                              a.shape.type, step.shape.type));
        break;
    }
    case FxOperation::Construct: {
        std::vector<Value> parts(step.count);
        for (size_t i = step.count; i-- > 0;)
            parts[i] = Pop();
        for (const Value& part : parts)
            for (const Place& cell : part.cells)
                value.cells.push_back(Converted(cell, part.shape.type, step.shape.type));
        break;
    }
    case FxOperation::Components: {
        const Value a = Pop();
        for (UINT i = 0; i < step.shape.Count(); ++i)
            value.cells.push_back(a.cells[step.components[i]]);
        break;
    }
    case FxOperation::Call:
        return Call(step);
    case FxOperation::Function:
        return Function(step);
    case FxOperation::Complement:
    case FxOperation::Program:
        return Fail("an operation on bits has an operand that changes");
    default:
        return Binary(step);
    }
    stack.push_back(std::move(value));
    return true;
}

} // namespace headless::fx
