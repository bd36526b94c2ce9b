// `switch`, which becomes an `if` for each of its cases, one after the other: the numbers exclude each other.

#include "platform/headless/d3dx/language/HlParser.h"

#include <set>

namespace headless::hl {

namespace {

/// No text can name a variable like this.
constexpr std::string_view kValueName = "switch";

bool Leaves(const HlStatement& statement)
{
    switch (statement.kind) {
    case HlStatementKind::Break:
    case HlStatementKind::Continue:
    case HlStatementKind::Return:
        return true;
    case HlStatementKind::Block:
        return !statement.list.empty() && Leaves(*statement.list.back());
    case HlStatementKind::If:
        return statement.second && Leaves(*statement.first) && Leaves(*statement.second);
    default:
        return false;
    }
}

/// At the end of its case a `break` says nothing.
void DropLastBreak(HlStatement& block)
{
    if (block.list.empty())
        return;
    if (block.list.back()->kind == HlStatementKind::Block)
        DropLastBreak(*block.list.back());
    else if (block.list.back()->kind == HlStatementKind::Break)
        block.list.pop_back();
}

} // namespace

struct HlParser::Cases {
    HlHint hint;
    std::set<int> numbers;
    HlExpression* any = nullptr;  ///< whether the value is that of a case
    HlStatement* other = nullptr; ///< the body of `default`
};

HlStatement* HlParser::Switch(HlHint hint)
{
    HlStatement* const block = NewStatement(HlStatementKind::Block);
    HlStatement* const first = NewStatement(HlStatementKind::Expression);
    ++position;
    if (!Expect("(") || !(first->condition = Expression()) || !Expect(")") || !Expect("{"))
        return nullptr;
    block->list.push_back(first);
    Cases cases = {hint, {}, nullptr, nullptr};
    while (!Accept("}"))
        if (!Case(*block, cases))
            return nullptr;
    if (cases.any)
        KeepValue(*first);
    if (!cases.other)
        return block;
    HlExpression* const isOther = cases.any ? New(HlExpressionKind::Unary, block->place) : nullptr;
    if (!isOther) {
        block->list.push_back(cases.other);
        return block;
    }
    isOther->op = HlOperator::Not;
    return Add(isOther, cases.any) ? AddCase(*block, hint, isOther, cases.other) : nullptr;
}

/// The value is computed once, as a whole number.
void HlParser::KeepValue(HlStatement& statement)
{
    HlVariable& variable = unit.variables.emplace_back();
    variable.name = kValueName;
    variable.place = statement.condition->begin;
    variable.type = unit.types.Scalar(HlBase::Int);
    variable.value = statement.condition;
    statement.kind = HlStatementKind::Declare;
    statement.condition = nullptr;
    statement.variables.push_back(&variable);
}

HlStatement* HlParser::AddCase(HlStatement& block, HlHint hint, HlExpression* condition,
                               HlStatement* body)
{
    HlStatement* const choice = NewStatement(HlStatementKind::If);
    choice->hint = hint;
    choice->place = body->place;
    choice->condition = condition;
    choice->first = body;
    block.list.push_back(choice);
    return &block;
}

/// Labels one after the other, and what they share.
bool HlParser::Case(HlStatement& block, Cases& cases)
{
    HlExpression* condition = nullptr;
    bool isDefault = false;
    if (!Is("case") && !Is("default"))
        return Unexpected("case, default or '}'");
    while (Is("case") || Is("default")) {
        if (Is("default") && (isDefault || cases.other))
            return Fail(Peek().place, FxError::Redefinition, "the switch has a default already");
        if (Accept("default"))
            isDefault = true;
        else if (!CaseNumber(cases, condition))
            return false;
        if (!Expect(":"))
            return false;
    }
    HlStatement* const body = CaseBody();
    if (!body)
        return false;
    if (isDefault) {
        cases.other = body;
        return true;
    }
    cases.any = Either(cases.any, condition);
    return cases.any && AddCase(block, cases.hint, condition, body);
}

bool HlParser::CaseNumber(Cases& cases, HlExpression*& conditionInOut)
{
    ++position;
    const HlExpression* const told = Binary(0);
    if (!told)
        return false;
    const bool isNegative = told->kind == HlExpressionKind::Unary && told->op == HlOperator::Minus;
    int number = 0;
    if (!WholeNumber(isNegative ? *told->parts[0] : *told, number))
        return Fail(told->begin, FxError::TypeMismatch,
                    "a case is a whole number that the text tells");
    number = isNegative ? -number : number;
    if (!cases.numbers.insert(number).second)
        return Fail(told->begin, FxError::Redefinition, "the switch has this case already");
    HlExpression* const value = New(HlExpressionKind::Name, told->begin);
    value->name = kValueName;
    HlExpression* const wanted = New(HlExpressionKind::Number, told->begin);
    wanted->base = HlBase::Int;
    wanted->number = static_cast<float>(number);
    HlExpression* const fits = New(HlExpressionKind::Binary, told->begin);
    fits->op = HlOperator::Equal;
    conditionInOut = Add(fits, value) && Add(fits, wanted) ? Either(conditionInOut, fits) : nullptr;
    return conditionInOut != nullptr;
}

/// `first` may be null.
HlExpression* HlParser::Either(HlExpression* first, HlExpression* second)
{
    if (!first)
        return second;
    HlExpression* const both = New(HlExpressionKind::Binary, second->begin);
    both->op = HlOperator::LogicalOr;
    return Add(both, first) ? Add(both, second) : nullptr;
}

HlStatement* HlParser::CaseBody()
{
    HlStatement* const result = NewStatement(HlStatementKind::Case);
    HlStatement* const block = NewStatement(HlStatementKind::Block);
    result->first = block;
    while (!Is("case") && !Is("default") && !Is("}")) {
        HlStatement* const statement = Statement();
        if (!statement)
            return nullptr;
        block->list.push_back(statement);
    }
    if (!block->list.empty() && !Is("}") && !Leaves(*block)) {
        Fail(Peek().place, FxError::Syntax, "the case before this one needs a 'break'");
        return nullptr;
    }
    DropLastBreak(*block);
    return result;
}

} // namespace headless::hl
