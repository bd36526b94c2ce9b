#include "platform/headless/d3dx/effect/FxExpressionReader.h"

#include "platform/headless/d3dx/effect/FxLimits.h"

namespace {

/// What an operator's operands must be and what comes of them.
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

/// The one form of two operands; a scalar goes with anything.
bool CommonForm(const FxShape& a, const FxShape& b, FxShape& resultOut)
{
    resultOut = a.IsScalar() ? b : a;
    return a.IsScalar() || b.IsScalar() || a.HasSameForm(b);
}

FxStep StepOf(FxOperation operation, const FxShape& shape)
{
    FxStep step;
    step.operation = operation;
    step.shape = shape;
    return step;
}

} // namespace

/// One level of nesting, for as long as it lives.
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
        expressionInOut.Add(StepOf(FxOperation::Convert, target));
    return true;
}

bool FxExpressionReader::Read(FxExpression& expressionOut)
{
    expressionOut.Clear();
    brackets = 0;
    return Choice(expressionOut);
}

bool FxExpressionReader::ReadConstant(std::int32_t& valueOut)
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
    out.Add(StepOf(FxOperation::Choose, result));
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
    out.Add(StepOf(operation, result));
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
    out.Add(StepOf(isNot          ? FxOperation::Not
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

bool FxExpressionReader::Literal(FxExpression& out)
{
    const FxToken word = words.Next();
    FxNumber number;
    if (!FxParseNumber(word.text, number))
        return StateWord(word, out) ||
               words.FailAt(word.place, FxError::BadNumber, FxDescribe(word) + " is not a number");
    out.AddLiteral(number);
    return true;
}

/// Some words of states begin with a digit.
bool FxExpressionReader::StateWord(const FxToken& word, FxExpression& out)
{
    const FxStateWord* found = stateWords ? stateWords->Find(word.text) : nullptr;
    if (!found)
        return false;
    FxNumber number;
    number.shape.type = D3DXPT_INT;
    number.cells[0] = found->value;
    out.AddLiteral(number);
    return true;
}

bool FxExpressionReader::Primary(FxExpression& out)
{
    const FxToken& word = words.Peek();
    if (word.kind == FxTokenKind::Number)
        return Literal(out);
    if (word.kind == FxTokenKind::Identifier)
        return Name(out);
    if (!word.Is("("))
        return words.Unexpected("a value");
    FxType type;
    if (words.Peek(1).kind == FxTokenKind::Identifier && words.Peek(2).Is(")") &&
        names.FindType(words.Peek(1).text, type))
        return Cast(out);
    words.Next();
    ++brackets;
    const bool isRead = Choice(out);
    --brackets;
    return isRead && words.Expect(")");
}

bool FxExpressionReader::Name(FxExpression& out)
{
    const FxToken word = words.Peek();
    const bool isParameter = names.parameters.contains(word.text);
    const bool isParameterFirst = inAngles && isParameter;
    if (!isParameterFirst && StateWord(word, out)) {
        words.Next();
        return true;
    }
    if (isParameter)
        return LoadParameter(out);
    FxType type;
    if (words.Peek(1).Is("(")) {
        if (names.FindType(word.text, type))
            return Construct(type, out);
        if (const FxIntrinsic* intrinsic = FxFindIntrinsic(word.text))
            return Call(*intrinsic, out);
        return words.Fail(FxError::UnknownName,
                          "there is no function " + FxDescribe(word) + " for values");
    }
    if (!word.IsWord("true") && !word.IsWord("false"))
        return words.Fail(FxError::UnknownName, FxDescribe(word) + " is not known");
    FxNumber number;
    number.shape.type = D3DXPT_BOOL;
    number.cells[0] = word.IsWord("true") ? 1 : 0;
    out.AddLiteral(number);
    words.Next();
    return true;
}

bool FxExpressionReader::Cast(FxExpression& out)
{
    words.Next();
    const FxToken name = words.Next();
    words.Next();
    FxType type;
    names.FindType(name.text, type);
    if (!type.IsNumeric())
        return words.FailAt(name.place, FxError::TypeMismatch,
                            "no value can become a " + FxDescribe(name));
    if (!Unary(out))
        return false;
    return FxAddConversion(out, type.Shape()) ||
           words.FailAt(name.place, FxError::TypeMismatch,
                        "the value is too small for a " + FxDescribe(name));
}

bool FxExpressionReader::Arguments(FxExpression& out, std::vector<FxShape>& shapesOut)
{
    words.Next();
    ++brackets;
    bool isRead = true;
    if (!words.Is(")")) {
        do {
            isRead =
                shapesOut.size() < 16 || words.Fail(FxError::Limit, "there are too many values");
            isRead = isRead && Choice(out);
            shapesOut.push_back(out.Shape());
        } while (isRead && words.Accept(","));
    }
    --brackets;
    return isRead && words.Expect(")");
}

bool FxExpressionReader::Construct(const FxType& type, FxExpression& out)
{
    const FxToken name = words.Next();
    std::vector<FxShape> shapes;
    if (!type.IsNumeric())
        return words.FailAt(name.place, FxError::TypeMismatch,
                            "no value can become a " + FxDescribe(name));
    if (!Arguments(out, shapes))
        return false;
    UINT count = 0;
    for (const FxShape& shape : shapes)
        count += shape.Count();
    const FxShape target = type.Shape();
    if (shapes.size() == 1 && count != target.Count() && FxAddConversion(out, target))
        return true;
    if (count != target.Count())
        return words.FailAt(name.place, FxError::TypeMismatch,
                            FxDescribe(name) + " takes " + std::to_string(target.Count()) +
                                " numbers, not " + std::to_string(count));
    FxStep step = StepOf(FxOperation::Construct, target);
    step.count = static_cast<std::uint32_t>(shapes.size());
    out.Add(step);
    return true;
}

bool FxExpressionReader::Call(const FxIntrinsic& intrinsic, FxExpression& out)
{
    const FxToken name = words.Next();
    std::vector<FxShape> shapes;
    if (!Arguments(out, shapes))
        return false;
    FxStep step = StepOf(FxOperation::Call, FxShape());
    step.intrinsic = &intrinsic;
    if (shapes.size() != intrinsic.arguments || !intrinsic.shape(shapes, step.shape))
        return words.FailAt(name.place, FxError::TypeMismatch,
                            "the values in brackets do not fit the function " + FxDescribe(name));
    out.Add(step);
    return true;
}

// ---- Parameters and parts of values

// Kept whole: one loop over the parts of a path, whose order is what matters.
bool FxExpressionReader::ReadParameter(const FxParameter*& parameterOut, FxExpression& indexOut)
{
    const FxToken name = words.Peek();
    const auto known = names.parameters.find(name.text);
    if (name.kind != FxTokenKind::Identifier || known == names.parameters.end())
        return words.Fail(FxError::UnknownName, FxDescribe(name) + " is no parameter");
    words.Next();
    parameterOut = known->second;
    for (;;) {
        if (parameterOut->IsArray() && indexOut.IsEmpty() && words.Is("[")) {
            const FxPlace place = words.Next().place;
            ++brackets;
            const bool isRead = Choice(indexOut);
            --brackets;
            if (!isRead || !words.Expect("]"))
                return false;
            if (!indexOut.Shape().IsScalar())
                return words.FailAt(place, FxError::BadIndex, "an index is one number");
            if (indexOut.IsConstant()) {
                const std::int32_t index = indexOut.Evaluate(scratch).Int(0);
                if (index < 0 || static_cast<UINT>(index) >= parameterOut->elements)
                    return words.FailAt(place, FxError::BadIndex,
                                        "the index " + std::to_string(index) + " is outside of " +
                                            FxDescribe(name));
                parameterOut = parameterOut->parts[static_cast<std::size_t>(index)].get();
                indexOut.Clear();
            }
        } else if (!parameterOut->IsArray() && parameterOut->kind == D3DXPC_STRUCT &&
                   words.Is(".")) {
            words.Next();
            const FxToken member = words.Next();
            parameterOut = FxFindByName(parameterOut->parts, member.text);
            if (!parameterOut)
                return words.FailAt(member.place, FxError::UnknownName,
                                    FxDescribe(name) + " has no member " + FxDescribe(member));
        } else {
            return true;
        }
    }
}

bool FxExpressionReader::LoadParameter(FxExpression& out)
{
    const FxToken name = words.Peek();
    const FxParameter* parameter = nullptr;
    FxExpression index;
    if (!ReadParameter(parameter, index))
        return false;
    const bool isElement = !index.IsEmpty();
    if (!parameter->IsNumeric() || (parameter->IsArray() && !isElement))
        return words.FailAt(name.place, FxError::TypeMismatch, FxDescribe(name) + " is no number");
    FxStep step =
        StepOf(isElement ? FxOperation::Element : FxOperation::Parameter, parameter->Shape());
    step.parameter = parameter;
    if (isElement)
        out.Append(index);
    out.Add(step);
    return true;
}

bool FxExpressionReader::Index(FxExpression& out)
{
    const FxPlace place = words.Next().place;
    const FxShape whole = out.Shape();
    FxExpression index;
    ++brackets;
    const bool isRead = Choice(index);
    --brackets;
    if (!isRead || !words.Expect("]"))
        return false;
    const bool isVector = whole.rows == 1;
    const UINT count = isVector ? whole.columns : whole.rows;
    const bool isKnown = index.IsConstant() && index.Shape().IsScalar();
    const bool isOutside =
        isKnown && static_cast<UINT>(index.Evaluate(scratch).Int(0)) >= count; // negative ones too
    if (whole.IsScalar() || !index.Shape().IsScalar() || isOutside)
        return words.FailAt(place, FxError::BadIndex, "the index does not fit the value before it");
    out.Append(index);
    out.Add(StepOf(FxOperation::Row, {whole.type, 1, isVector ? 1 : whole.columns}));
    return true;
}

bool FxExpressionReader::Component(FxExpression& out)
{
    words.Next();
    const FxToken name = words.Next();
    const FxShape whole = out.Shape();
    FxStep step = StepOf(FxOperation::Components, {whole.type, 1, 0});
    const bool fits = name.kind == FxTokenKind::Identifier &&
                      (name.text.starts_with('_') ? MatrixComponents(name.text, whole, step)
                                                  : VectorComponents(name.text, whole, step));
    if (!fits)
        return words.FailAt(name.place, FxError::BadComponent,
                            "the value has no component " + FxDescribe(name));
    out.Add(step);
    return true;
}

/// `xyzw` or `rgba`, one to four of one set.
bool FxExpressionReader::VectorComponents(std::string_view text, const FxShape& shape,
                                          FxStep& stepOut)
{
    for (const std::string_view set : {"xyzw", "rgba"}) {
        stepOut.shape.columns = 0;
        for (const char c : text.substr(0, 5)) {
            const std::size_t component = set.find(c);
            if (component >= shape.columns || stepOut.shape.columns == 4)
                break;
            stepOut.components[stepOut.shape.columns++] = static_cast<std::uint8_t>(component);
        }
        if (stepOut.shape.columns == text.size() && shape.rows == 1)
            return true;
    }
    return false;
}

/// `_11` counts from 1, `_m00` from 0; one to four behind one another.
bool FxExpressionReader::MatrixComponents(std::string_view text, const FxShape& shape,
                                          FxStep& stepOut)
{
    const bool fromZero = text.starts_with("_m");
    const std::size_t length = fromZero ? 4 : 3;
    for (; text.size() >= length && text.starts_with(fromZero ? "_m" : "_");
         text.remove_prefix(length)) {
        const int base = fromZero ? '0' : '1';
        const UINT row = static_cast<UINT>(text[length - 2] - base);
        const UINT column = static_cast<UINT>(text[length - 1] - base);
        if (row >= shape.rows || column >= shape.columns || stepOut.shape.columns == 4)
            return false;
        stepOut.components[stepOut.shape.columns++] =
            static_cast<std::uint8_t>(row * shape.columns + column);
    }
    return text.empty() && stepOut.shape.columns > 0;
}
