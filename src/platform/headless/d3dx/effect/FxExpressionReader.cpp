#include "platform/headless/d3dx/effect/FxExpressionReader.h"

#include "platform/headless/d3dx/effect/FxLimits.h"

namespace headless::fx {

namespace {

/// What an operator requires of its operands and what its result is.
enum class Family { Truth, Comparison, Bits, Arithmetic };

struct Operator {
    std::string_view sign;
    int rank;
    Family family;
    FxOperation operation;
};

constexpr Operator kOperators[] = {
    {"||", 1, Family::Truth, FxOperation::Or},
    {"&&", 2, Family::Truth, FxOperation::And},
    {"|", 3, Family::Bits, FxOperation::BitOr},
    {"^", 4, Family::Bits, FxOperation::BitXor},
    {"&", 5, Family::Bits, FxOperation::BitAnd},
    {"==", 6, Family::Comparison, FxOperation::Equal},
    {"!=", 6, Family::Comparison, FxOperation::NotEqual},
    {"<", 7, Family::Comparison, FxOperation::Less},
    {"<=", 7, Family::Comparison, FxOperation::LessEqual},
    {">", 7, Family::Comparison, FxOperation::Greater},
    {">=", 7, Family::Comparison, FxOperation::GreaterEqual},
    {"<<", 8, Family::Bits, FxOperation::ShiftLeft},
    {">>", 8, Family::Bits, FxOperation::ShiftRight},
    {"+", 9, Family::Arithmetic, FxOperation::Add},
    {"-", 9, Family::Arithmetic, FxOperation::Subtract},
    {"*", 10, Family::Arithmetic, FxOperation::Multiply},
    {"/", 10, Family::Arithmetic, FxOperation::Divide},
    {"%", 10, Family::Arithmetic, FxOperation::Modulo},
};

const Operator* FindOperator(const FxToken& word)
{
    for (const Operator& candidate : kOperators)
        if (word.Is(candidate.sign))
            return &candidate;
    return nullptr;
}

/// The common dimensions of two operands; a scalar fits any.
bool CommonForm(const FxShape& a, const FxShape& b, FxShape& resultOut)
{
    resultOut = a.IsScalar() ? b : a;
    return a.IsScalar() || b.IsScalar() || a.HasSameForm(b);
}

} // namespace

/// One level of nesting during its lifetime.
struct FxExpressionReader::Level {
    explicit Level(FxExpressionReader& owner) : reader(owner) { ++reader.depth; }
    ~Level() { --reader.depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    bool Fits() const
    {
        return reader.depth <= kFxMaxNesting ||
               reader.words.Fail(FxError::Limit, "an expression is nested too deeply");
    }
    FxExpressionReader& reader;
};

bool FxAddConversion(FxExpression& expressionInOut, const FxShape& target)
{
    const FxShape from = expressionInOut.Shape();
    if (!from.IsScalar() && (from.rows < target.rows || from.columns < target.columns))
        return false;
    if (from.type != target.type || !from.HasSameForm(target))
        expressionInOut.Add(FxStepOf(FxOperation::Convert, target));
    return true;
}

bool FxExpressionReader::Read(FxExpression& expressionOut)
{
    expressionOut.Clear();
    brackets = 0;
    return Choice(expressionOut);
}

bool FxExpressionReader::ReadConstant(int32_t& valueOut)
{
    const FxPlace place = words.Peek().place;
    FxExpression expression;
    if (!Choice(expression))
        return false;
    if (!expression.Shape().IsScalar())
        return words.FailAt(place, FxError::BadIndex, "one number is expected");
    valueOut = expression.Evaluate(scratch).Int(0);
    return true;
}

bool FxExpressionReader::Choice(FxExpression& out)
{
    const Level level(*this);
    if (!level.Fits() || !Binary(1, out))
        return false;
    if (!words.Is("?"))
        return true;
    const FxToken sign = words.Next();
    const FxShape condition = out.Shape();
    if (!Choice(out))
        return false;
    const FxShape yes = out.Shape();
    if (!words.Expect(":") || !Choice(out))
        return false;
    const FxShape no = out.Shape();
    FxShape result;
    FxShape all;
    if (!CommonForm(yes, no, result) || !CommonForm(condition, result, all) ||
        !(condition.IsScalar() || all.HasSameForm(result)))
        return words.FailAt(sign.place, FxError::TypeMismatch,
                            "the two values of '?' have different forms");
    result.type = yes.type == D3DXPT_FLOAT || no.type == D3DXPT_FLOAT ? D3DXPT_FLOAT
                  : yes.type == no.type                               ? yes.type
                                                                      : D3DXPT_INT;
    out.Add(FxStepOf(FxOperation::Choose, result));
    return true;
}

bool FxExpressionReader::StopsHere() const
{
    const FxToken& word = words.Peek();
    return IsInAngles() && (word.Is(">") || word.Is(">=") || word.Is(">>"));
}

bool FxExpressionReader::Binary(int lowestRank, FxExpression& out)
{
    if (!Unary(out))
        return false;
    for (;;) {
        const Operator* found = StopsHere() ? nullptr : FindOperator(words.Peek());
        if (!found || found->rank < lowestRank)
            return true;
        const FxToken sign = words.Next();
        const FxShape left = out.Shape();
        if (!Binary(found->rank + 1, out) || !AddBinary(sign, found->operation, left, out))
            return false;
    }
}

bool FxExpressionReader::AddBinary(const FxToken& sign, FxOperation operation, FxShape left,
                                   FxExpression& out)
{
    const FxShape right = out.Shape();
    FxShape result;
    if (!CommonForm(left, right, result))
        return words.FailAt(sign.place, FxError::TypeMismatch,
                            "the operands of " + FxDescribe(sign) + " have different forms");
    const Family family = FindOperator(sign)->family;
    const bool hasFloat = left.type == D3DXPT_FLOAT || right.type == D3DXPT_FLOAT;
    if (family == Family::Bits && hasFloat)
        return words.FailAt(sign.place, FxError::TypeMismatch,
                            "the operands of " + FxDescribe(sign) + " are not whole numbers");
    if (family == Family::Truth || family == Family::Comparison)
        result.type = D3DXPT_BOOL;
    else
        result.type = hasFloat ? D3DXPT_FLOAT : D3DXPT_INT;
    out.Add(FxStepOf(operation, result));
    return true;
}

bool FxExpressionReader::Unary(FxExpression& out)
{
    const Level level(*this);
    if (!level.Fits())
        return false;
    const FxToken sign = words.Peek();
    if (words.Accept("+"))
        return Unary(out);
    if (!sign.Is("-") && !sign.Is("!") && !sign.Is("~"))
        return Postfix(out);
    words.Next();
    if (!Unary(out))
        return false;
    FxShape shape = out.Shape();
    if (sign.Is("~") && shape.type == D3DXPT_FLOAT)
        return words.FailAt(sign.place, FxError::TypeMismatch,
                            "the operand of '~' is not a whole number");
    const bool isNot = sign.Is("!");
    shape.type = isNot ? D3DXPT_BOOL : shape.type == D3DXPT_FLOAT ? D3DXPT_FLOAT : D3DXPT_INT;
    out.Add(FxStepOf(isNot          ? FxOperation::Not
                     : sign.Is("~") ? FxOperation::Complement
                                    : FxOperation::Negate,
                     shape));
    return true;
}

bool FxExpressionReader::Postfix(FxExpression& out)
{
    if (!Primary(out))
        return false;
    for (;;) {
        if (words.Is(".") && !Component(out))
            return false;
        if (words.Is("[") && !Index(out))
            return false;
        if (!words.Is(".") && !words.Is("["))
            return true;
    }
}

} // namespace headless::fx
