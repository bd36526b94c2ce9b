// Expressions.

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxNumber.h"
#include "platform/headless/d3dx/language/HlParser.h"

#include <algorithm>
#include <utility>

namespace headless::hl {

namespace {

/// A tree of this depth is still walked by recursion.
constexpr int kMaxTreeDepth = 256;
/// Values of one call or constructor.
constexpr size_t kMaxArguments = 256;

struct BinaryRow {
    std::string_view sign;
    HlOperator op;
    int level;
};

/// The higher the level, the closer an operator binds.
constexpr BinaryRow kBinary[] = {
    {"||", HlOperator::LogicalOr, 0},    {"&&", HlOperator::LogicalAnd, 1},
    {"|", HlOperator::BitOr, 2},         {"^", HlOperator::BitXor, 3},
    {"&", HlOperator::BitAnd, 4},        {"==", HlOperator::Equal, 5},
    {"!=", HlOperator::NotEqual, 5},     {"<", HlOperator::Less, 6},
    {"<=", HlOperator::LessEqual, 6},    {">", HlOperator::Greater, 6},
    {">=", HlOperator::GreaterEqual, 6}, {"<<", HlOperator::ShiftLeft, 7},
    {">>", HlOperator::ShiftRight, 7},   {"+", HlOperator::Add, 8},
    {"-", HlOperator::Subtract, 8},      {"*", HlOperator::Multiply, 9},
    {"/", HlOperator::Divide, 9},        {"%", HlOperator::Modulo, 9},
};
constexpr int kLevels = 10;

constexpr struct {
    std::string_view sign;
    HlOperator op;
} kCompound[] = {{"+=", HlOperator::Add},        {"-=", HlOperator::Subtract},
                 {"*=", HlOperator::Multiply},   {"/=", HlOperator::Divide},
                 {"%=", HlOperator::Modulo},     {"&=", HlOperator::BitAnd},
                 {"|=", HlOperator::BitOr},      {"^=", HlOperator::BitXor},
                 {"<<=", HlOperator::ShiftLeft}, {">>=", HlOperator::ShiftRight}};

} // namespace

HlExpression* HlParser::New(HlExpressionKind kind, FxPlace place)
{
    HlExpression& expression = unit.expressions.emplace_back();
    expression.kind = kind;
    expression.place = expression.begin = place;
    return &expression;
}

/// Null if there is no part, or the tree becomes too deep.
HlExpression* HlParser::Add(HlExpression* parent, HlExpression* part)
{
    if (!part)
        return nullptr;
    if (unit.expressions.size() > kHlMaxExpressions) {
        Fail(parent->place, FxError::Limit, "the functions are too long");
        return nullptr;
    }
    const FxPlace at = parent->begin;
    const bool isBefore =
        part->begin.file == at.file &&
        std::pair(part->begin.line, part->begin.column) < std::pair(at.line, at.column);
    parent->begin = isBefore ? part->begin : at;
    parent->parts.push_back(part);
    parent->depth = std::max(parent->depth, part->depth + 1);
    if (parent->depth <= kMaxTreeDepth)
        return parent;
    Fail(parent->place, FxError::Limit, "the expression is nested too deep");
    return nullptr;
}

HlExpression* HlParser::Expression()
{
    HlExpression* first = Assignment();
    while (first && Is(",")) {
        HlExpression* const comma = New(HlExpressionKind::Comma, Peek().place);
        ++position;
        first = Add(comma, first) ? Add(comma, Assignment()) : nullptr;
    }
    return first;
}

/// Brackets, signs, conditions and lists recurse by way of this.
HlExpression* HlParser::Assignment()
{
    if (++nesting > fx::kFxMaxNesting) {
        Fail(Peek().place, FxError::Limit, "the brackets are nested too deep");
        return nullptr;
    }
    HlExpression* result = Conditional();
    if (result && Is("=")) {
        HlExpression* const assign = New(HlExpressionKind::Assign, Peek().place);
        ++position;
        result = Add(assign, result) ? Add(assign, Assignment()) : nullptr;
    } else if (result) {
        for (const auto& row : kCompound) {
            if (!Is(row.sign))
                continue;
            HlExpression* const assign = New(HlExpressionKind::Assign, Peek().place);
            assign->op = row.op;
            assign->isCompound = true;
            ++position;
            result = Add(assign, result) ? Add(assign, Assignment()) : nullptr;
            break;
        }
    }
    --nesting;
    return result;
}

HlExpression* HlParser::Conditional()
{
    HlExpression* const condition = Binary(0);
    if (!condition || !Is("?"))
        return condition;
    HlExpression* const choice = New(HlExpressionKind::Condition, Peek().place);
    ++position;
    if (!Add(choice, condition) || !Add(choice, Assignment()) || !Expect(":"))
        return nullptr;
    return Add(choice, Assignment());
}

HlExpression* HlParser::Binary(int level)
{
    if (level == kLevels)
        return Unary();
    HlExpression* left = Binary(level + 1);
    while (left) {
        const auto row =
            std::find_if(std::begin(kBinary), std::end(kBinary),
                         [&](const BinaryRow& one) { return one.level == level && Is(one.sign); });
        if (row == std::end(kBinary))
            break;
        HlExpression* const binary = New(HlExpressionKind::Binary, Peek().place);
        binary->op = row->op;
        ++position;
        left = Add(binary, left) ? Add(binary, Binary(level + 1)) : nullptr;
    }
    return left;
}

HlExpression* HlParser::Unary()
{
    static constexpr struct {
        std::string_view sign;
        HlOperator op;
    } kSigns[] = {{"-", HlOperator::Minus},      {"+", HlOperator::Plus},
                  {"!", HlOperator::Not},        {"~", HlOperator::Complement},
                  {"++", HlOperator::Increment}, {"--", HlOperator::Decrement}};
    for (const auto& row : kSigns) {
        if (!Is(row.sign))
            continue;
        const bool isStep = row.op == HlOperator::Increment || row.op == HlOperator::Decrement;
        HlExpression* const unary =
            New(isStep ? HlExpressionKind::Step : HlExpressionKind::Unary, Peek().place);
        unary->op = row.op;
        unary->isPrefix = true;
        ++position;
        if (++nesting > fx::kFxMaxNesting) {
            Fail(unary->place, FxError::Limit, "the signs are nested too deep");
            return nullptr;
        }
        HlExpression* const part = Unary();
        --nesting;
        return Add(unary, part);
    }
    const bool isCast = Is("(") && AtType(1) && !Peek(2).Is("(");
    return isCast ? Cast() : Postfix();
}

HlExpression* HlParser::Cast()
{
    HlExpression* const cast = New(HlExpressionKind::Cast, Peek().place);
    ++position;
    if (!Type(cast->type, {}) || !ArrayLengths(cast->type) || !Expect(")"))
        return nullptr;
    if (++nesting > fx::kFxMaxNesting) {
        Fail(cast->place, FxError::Limit, "the casts are nested too deep");
        return nullptr;
    }
    HlExpression* const part = Unary();
    --nesting;
    return Add(cast, part);
}

HlExpression* HlParser::Postfix()
{
    HlExpression* value = Primary();
    while (value) {
        if (Is("[")) {
            HlExpression* const index = New(HlExpressionKind::Index, Peek().place);
            ++position;
            value = Add(index, value) ? Add(index, Expression()) : nullptr;
            if (value && !Expect("]"))
                return nullptr;
        } else if (Is(".")) {
            ++position;
            HlExpression* const member = New(HlExpressionKind::Member, Peek().place);
            member->name = Peek().text;
            if (Peek().kind != fx::FxTokenKind::Identifier) {
                Unexpected("a member");
                return nullptr;
            }
            ++position;
            value = Add(member, value);
        } else if (Is("++") || Is("--")) {
            HlExpression* const step = New(HlExpressionKind::Step, Peek().place);
            step->op = Is("++") ? HlOperator::Increment : HlOperator::Decrement;
            ++position;
            value = Add(step, value);
        } else {
            break;
        }
    }
    return value;
}

bool HlParser::Arguments(HlExpression& call)
{
    while (!Accept(")")) {
        if (call.parts.size() == kMaxArguments)
            return Fail(Peek().place, FxError::Limit, "there are too many values");
        if (!Add(&call, Assignment()))
            return false;
        if (!Accept(",") && !Is(")"))
            return Unexpected("',' or ')'");
    }
    return true;
}

HlExpression* HlParser::Primary()
{
    const FxToken word = Peek();
    if (word.kind == fx::FxTokenKind::Number)
        return Number();
    if (Accept("(")) {
        HlExpression* const inner = Expression();
        return inner && Expect(")") ? inner : nullptr;
    }
    if (Is("{"))
        return Initializer();
    if (word.kind != fx::FxTokenKind::Identifier) {
        Unexpected("an expression");
        return nullptr;
    }
    if (word.Is("true") || word.Is("false")) {
        HlExpression* const truth = New(HlExpressionKind::Number, word.place);
        truth->base = HlBase::Bool;
        truth->number = word.Is("true") ? 1.0f : 0.0f;
        ++position;
        return truth;
    }
    if (AtType()) {
        HlExpression* const construct = New(HlExpressionKind::Construct, word.place);
        if (!Type(construct->type, {}) || !Expect("(") || !Arguments(*construct))
            return nullptr;
        return construct;
    }
    HlExpression* const name = New(HlExpressionKind::Name, word.place);
    name->name = word.text;
    ++position;
    if (!Accept("("))
        return name;
    name->kind = HlExpressionKind::Call;
    return Arguments(*name) ? name : nullptr;
}

HlExpression* HlParser::Number()
{
    const FxToken word = Peek();
    HlExpression* const number = New(HlExpressionKind::Number, word.place);
    fx::FxNumber value;
    if (!fx::FxParseNumber(word.text, value)) {
        Fail(word.place, FxError::BadNumber, FxDescribe(word) + " is no number");
        return nullptr;
    }
    number->base = value.shape.type == D3DXPT_FLOAT ? HlBase::Float : HlBase::Int;
    number->number =
        number->base == HlBase::Float ? value.Float(0) : static_cast<float>(value.Int(0));
    ++position;
    return number;
}

/// An expression, or a list in braces.
HlExpression* HlParser::Initializer()
{
    if (!Is("{"))
        return Assignment();
    HlExpression* list = New(HlExpressionKind::List, Peek().place);
    ++position;
    if (++nesting > fx::kFxMaxNesting) {
        Fail(list->place, FxError::Limit, "the lists are nested too deep");
        return nullptr;
    }
    while (list && !Accept("}")) {
        list = Add(list, Initializer());
        if (list && !Accept(",") && !Is("}")) {
            Unexpected("',' or '}'");
            return nullptr;
        }
    }
    --nesting;
    return list;
}

} // namespace headless::hl
