#include "platform/headless/d3dx/effect/FxExpression.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/headless/d3dx/effect/FxComputation.h"
#include "platform/headless/d3dx/effect/FxParameter.h"
#include "platform/headless/d3dx/effect/FxProgram.h"

namespace headless::fx {

namespace {

FxNumber Load(const FxParameter& parameter, size_t firstCell, const FxShape& shape)
{
    FxNumber number;
    number.shape = shape;
    std::copy_n(parameter.storage->cells.begin() + static_cast<ptrdiff_t>(firstCell), shape.Count(),
                number.cells.begin());
    return number;
}

UINT Nearest(const FxNumber& index, UINT count)
{
    return static_cast<UINT>(std::clamp(index.Int(0), 0, static_cast<int32_t>(count) - 1));
}

/// Integers wrap around; division by 0 gives 0.
int32_t Whole(FxOperation operation, int32_t a, int32_t b)
{
    const auto x = static_cast<uint32_t>(a);
    const auto y = static_cast<uint32_t>(b);
    const auto wide = [](int64_t value) { return static_cast<int32_t>(value); };
    switch (operation) {
    case FxOperation::BitOr:
        return static_cast<int32_t>(x | y);
    case FxOperation::BitXor:
        return static_cast<int32_t>(x ^ y);
    case FxOperation::BitAnd:
        return static_cast<int32_t>(x & y);
    case FxOperation::ShiftLeft:
        return static_cast<int32_t>(x << (y & 31));
    case FxOperation::ShiftRight:
        return a >> (y & 31);
    case FxOperation::Add:
        return static_cast<int32_t>(x + y);
    case FxOperation::Subtract:
        return static_cast<int32_t>(x - y);
    case FxOperation::Multiply:
        return static_cast<int32_t>(x * y);
    case FxOperation::Divide:
        return b == 0 ? 0 : wide(int64_t{a} / b);
    default:
        return b == 0 ? 0 : wide(int64_t{a} % b);
    }
}

float Real(FxOperation operation, float a, float b)
{
    switch (operation) {
    case FxOperation::Add:
        return a + b;
    case FxOperation::Subtract:
        return a - b;
    case FxOperation::Multiply:
        return a * b;
    case FxOperation::Divide:
        return a / b;
    default:
        return std::fmod(a, b);
    }
}

template <typename T>
bool Compare(FxOperation operation, T a, T b)
{
    switch (operation) {
    case FxOperation::Equal:
        return a == b;
    case FxOperation::NotEqual:
        return a != b;
    case FxOperation::Less:
        return a < b;
    case FxOperation::LessEqual:
        return a <= b;
    case FxOperation::Greater:
        return a > b;
    default:
        return a >= b;
    }
}

bool Truth(FxOperation operation, const FxNumber& a, const FxNumber& b, UINT i)
{
    if (operation == FxOperation::Or)
        return a.Bool(i) || b.Bool(i);
    if (operation == FxOperation::And)
        return a.Bool(i) && b.Bool(i);
    if (a.shape.type == D3DXPT_FLOAT || b.shape.type == D3DXPT_FLOAT)
        return Compare(operation, a.Float(i), b.Float(i));
    return Compare(operation, a.Int(i), b.Int(i));
}

void Binary(const FxStep& step, const FxNumber& a, const FxNumber& b, FxNumber& resultOut)
{
    for (UINT i = 0; i < step.shape.Count(); ++i) {
        if (step.shape.type == D3DXPT_BOOL)
            resultOut.cells[i] = Truth(step.operation, a, b, i) ? 1 : 0;
        else if (step.shape.type == D3DXPT_INT)
            resultOut.SetInt(i, Whole(step.operation, a.Int(i), b.Int(i)));
        else
            resultOut.SetFloat(i, Real(step.operation, a.Float(i), b.Float(i)));
    }
}

void Unary(const FxStep& step, const FxNumber& a, FxNumber& resultOut)
{
    for (UINT i = 0; i < step.shape.Count(); ++i) {
        if (step.operation == FxOperation::Not)
            resultOut.cells[i] = a.Bool(i) ? 0 : 1;
        else if (step.operation == FxOperation::Complement)
            resultOut.SetInt(i, ~a.Int(i));
        else if (step.shape.type == D3DXPT_FLOAT)
            resultOut.SetFloat(i, -a.Float(i));
        else
            resultOut.SetInt(i, Whole(FxOperation::Subtract, 0, a.Int(i)));
    }
}

/// Takes the upper left part if the value has more rows or columns than wanted.
void Convert(const FxStep& step, const FxNumber& a, FxNumber& resultOut)
{
    const bool isFlat = a.shape.IsScalar() || a.shape.columns <= step.shape.columns;
    for (UINT row = 0; row < step.shape.rows; ++row) {
        for (UINT column = 0; column < step.shape.columns; ++column) {
            const UINT to = row * step.shape.columns + column;
            const UINT from = isFlat ? to : row * a.shape.columns + column;
            resultOut.cells[to] =
                FxConvert(a.cells[a.shape.IsScalar() ? 0 : from], a.shape.type, step.shape.type);
        }
    }
}

void Construct(const FxStep& step, const FxNumber* parts, FxNumber& resultOut)
{
    UINT cell = 0;
    for (uint32_t part = 0; part < step.count; ++part)
        for (UINT i = 0; i < parts[part].shape.Count(); ++i)
            resultOut.cells[cell++] =
                FxConvert(parts[part].cells[i], parts[part].shape.type, step.shape.type);
}

void Row(const FxStep& step, const FxNumber& whole, const FxNumber& index, FxNumber& resultOut)
{
    const bool isVector = whole.shape.rows == 1;
    const UINT first = isVector ? Nearest(index, whole.shape.columns)
                                : Nearest(index, whole.shape.rows) * whole.shape.columns;
    std::copy_n(whole.cells.begin() + first, step.shape.Count(), resultOut.cells.begin());
}

/// Number of values that a step pops from the stack.
size_t Takes(const FxStep& step)
{
    switch (step.operation) {
    case FxOperation::Literal:
    case FxOperation::Parameter:
    case FxOperation::Program:
        return 0;
    case FxOperation::Element:
    case FxOperation::Negate:
    case FxOperation::Not:
    case FxOperation::Complement:
    case FxOperation::Convert:
    case FxOperation::Components:
        return 1;
    case FxOperation::Choose:
        return 3;
    case FxOperation::Construct:
    case FxOperation::Function:
        return step.count;
    case FxOperation::Call:
        return step.intrinsic->arguments;
    default:
        return 2;
    }
}

/// `taken` are the values popped by the step, in their order.
void Run(const FxStep& step, const FxNumber* taken, FxNumber& resultOut)
{
    switch (step.operation) {
    case FxOperation::Parameter:
        resultOut = Load(*step.parameter, step.parameter->first, step.shape);
        break;
    case FxOperation::Element:
        resultOut = Load(*step.parameter,
                         step.parameter->first + size_t{step.shape.Count()} *
                                                     Nearest(taken[0], step.parameter->elements),
                         step.shape);
        break;
    case FxOperation::Negate:
    case FxOperation::Not:
    case FxOperation::Complement:
        Unary(step, taken[0], resultOut);
        break;
    case FxOperation::Choose:
        for (UINT i = 0; i < step.shape.Count(); ++i) {
            const FxNumber& chosen = taken[0].Bool(i) ? taken[1] : taken[2];
            resultOut.cells[i] = FxConvert(chosen.cells[chosen.shape.IsScalar() ? 0 : i],
                                           chosen.shape.type, step.shape.type);
        }
        break;
    case FxOperation::Convert:
        Convert(step, taken[0], resultOut);
        break;
    case FxOperation::Construct:
        Construct(step, taken, resultOut);
        break;
    case FxOperation::Components:
        for (UINT i = 0; i < step.shape.Count(); ++i)
            resultOut.cells[i] = taken[0].cells[step.components[i]];
        break;
    case FxOperation::Row:
        Row(step, taken[0], taken[1], resultOut);
        break;
    case FxOperation::Call:
        step.intrinsic->run(*step.intrinsic, {taken, step.intrinsic->arguments}, resultOut);
        break;
    case FxOperation::Function:
        step.function->Run({taken, step.count}, resultOut);
        break;
    default:
        Binary(step, taken[0], taken[1], resultOut);
        break;
    }
}

} // namespace

void FxExpression::AddLiteral(const FxNumber& number)
{
    FxStep step;
    step.shape = number.shape;
    step.count = static_cast<uint32_t>(literals.size());
    literals.push_back(number);
    steps.push_back(step);
}

void FxExpression::AddProgram(std::shared_ptr<FxProgram> compiled, const FxShape& shape)
{
    program = std::move(compiled);
    steps.push_back(FxStepOf(FxOperation::Program, shape));
}

void FxExpression::AddFunction(std::shared_ptr<const FxComputation> function, size_t arguments)
{
    FxStep step = FxStepOf(FxOperation::Function, function->Shape());
    step.count = static_cast<uint32_t>(arguments);
    step.function = function.get();
    functions.push_back(std::move(function));
    steps.push_back(step);
}

bool FxExpression::IsConstant() const
{
    return !program && std::none_of(steps.begin(), steps.end(), [](const FxStep& step) {
        return step.parameter || (step.function && !step.function->Parameters().empty());
    });
}

void FxExpression::Clear()
{
    steps.clear();
    literals.clear();
    functions.clear();
    program.reset();
}

void FxExpression::Append(const FxExpression& other)
{
    const auto firstLiteral = static_cast<uint32_t>(literals.size());
    for (FxStep step : other.steps) {
        step.count += step.operation == FxOperation::Literal ? firstLiteral : 0;
        steps.push_back(step);
    }
    literals.insert(literals.end(), other.literals.begin(), other.literals.end());
    functions.insert(functions.end(), other.functions.begin(), other.functions.end());
}

FxNumber FxExpression::Evaluate(std::vector<FxNumber>& scratch) const
{
    scratch.clear();
    for (const FxStep& step : steps) {
        FxNumber result;
        result.shape = step.shape;
        const size_t taken = Takes(step);
        if (step.operation == FxOperation::Literal)
            result = literals[step.count];
        else if (step.operation == FxOperation::Program)
            result = program->Evaluate(step.shape);
        else
            Run(step, scratch.data() + (scratch.size() - taken), result);
        scratch.resize(scratch.size() - taken);
        scratch.push_back(result);
    }
    return scratch.empty() ? FxNumber() : scratch.back();
}

bool FxExpression::Reads(const FxParameter& parameter) const
{
    if (program && program->inputs.Reads(parameter))
        return true;
    const auto isIt = [&](const FxParameter* read) {
        return read && read->storage == parameter.storage;
    };
    return std::any_of(steps.begin(), steps.end(),
                       [&](const FxStep& step) { return isIt(step.parameter); }) ||
           std::any_of(functions.begin(), functions.end(), [&](const auto& function) {
               const auto& read = function->Parameters();
               return std::any_of(read.begin(), read.end(), isIt);
           });
}

uint64_t FxExpression::Newest() const
{
    uint64_t newest = program ? program->inputs.Newest() : 0;
    for (const FxStep& step : steps)
        if (step.parameter)
            newest = std::max(newest, step.parameter->storage->changed);
    for (const auto& function : functions)
        for (const FxParameter* parameter : function->Parameters())
            newest = std::max(newest, parameter->storage->changed);
    return newest;
}

} // namespace headless::fx
