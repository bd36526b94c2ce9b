// Statements without loops and branches.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>

namespace headless::hl {

namespace {

/// Statements nested in calls nested in statements.
constexpr int kMaxStatementDepth = 400;

} // namespace

void HlRunner::Run(const HlStatement& statement)
{
    if (HasToStop() || IsDead() || !Spend(statement.place))
        return;
    if (depth > kMaxStatementDepth) {
        stops = true;
        Fail(statement.place, FxError::Limit, "the calls are nested too deep");
        return;
    }
    ++depth;
    switch (statement.kind) {
    case HlStatementKind::Empty:
        break;
    case HlStatementKind::Expression:
        Evaluate(*statement.condition);
        break;
    case HlStatementKind::Declare:
        RunDeclaration(statement);
        break;
    case HlStatementKind::Block:
        RunBlock(statement);
        break;
    case HlStatementKind::If:
        RunIf(statement);
        break;
    case HlStatementKind::Case:
        RunCase(statement);
        break;
    case HlStatementKind::For:
    case HlStatementKind::While:
    case HlStatementKind::Do:
        RunLoop(statement);
        break;
    case HlStatementKind::Return:
        RunReturn(statement);
        break;
    case HlStatementKind::Discard:
        RunDiscard(graph.Literal(1.0f));
        break;
    default:
        RunJump(statement);
        break;
    }
    --depth;
}

void HlRunner::RunBlock(const HlStatement& statement)
{
    const Scope scope = OpenScope();
    for (const HlStatement* one : statement.list)
        Run(*one);
    CloseScope(scope);
}

void HlRunner::RunCase(const HlStatement& statement)
{
    const Scope scope = OpenScope();
    caseMasks.push_back(masks.size());
    PushMask();
    Run(*statement.first);
    PopMask();
    caseMasks.pop_back();
    CloseScope(scope);
}

void HlRunner::RunDeclaration(const HlStatement& statement)
{
    for (const HlVariable* variable : statement.variables) {
        const HlType* type = variable->type;
        HlRefs refs;
        if (variable->value && !Initialize(*type, *variable->value, refs))
            refs.clear();
        if (type->kind == HlKind::Array && type->count == 0) {
            if (refs.empty())
                Fail(variable->place, FxError::BadInitializer,
                     "the array '" + std::string(variable->name) + "' needs a length");
            type = unit.types.Array(
                *type->element,
                static_cast<uint32_t>(refs.size() / std::max(1u, type->element->cells)));
        }
        if (!type || !Spend(variable->place, type->cells))
            return;
        const uint32_t slot = Declare(variable->name, *variable, *type);
        std::copy(refs.begin(), refs.end(), slots.begin() + slot);
    }
}

void HlRunner::RunReturn(const HlStatement& statement)
{
    const HlType& result = *running->result;
    if (statement.condition) {
        HlValue value = Evaluate(*statement.condition);
        if (result.kind == HlKind::Void) {
            Fail(statement.place, FxError::TypeMismatch,
                 "'" + std::string(running->name) + "' is void and gives no value");
            return;
        }
        if (value.type->IsError() || !Convert(value, result, statement.condition->begin, false))
            return;
        for (size_t i = 0; i < value.refs.size(); ++i)
            Write(resultSlot + static_cast<uint32_t>(i), value.refs[i]);
    } else if (result.kind != HlKind::Void) {
        Fail(statement.place, FxError::TypeMismatch,
             "'" + std::string(running->name) + "' gives a value of type " + HlTypes::Name(result));
        return;
    }
    Write(masks[returnMask], graph.Literal(0.0f));
}

/// Whether the program comes here at all.
HlRef HlRunner::PathTruth()
{
    HlRef truth = Live(0);
    for (const HlRef condition : path)
        truth = graph.And(truth, condition);
    return truth;
}

/// Drops the pixel where `condition` holds.
void HlRunner::RunDiscard(HlRef condition)
{
    if (!graph.Profile().isPixel)
        return;
    const HlRef all = graph.And(PathTruth(), condition);
    if (!graph.IsValue(all, 0.0f))
        graph.Effect(HlOp::Kill, 0, {all.Negated()});
}

void HlRunner::RunJump(const HlStatement& statement)
{
    const bool isBreak = statement.kind == HlStatementKind::Break;
    const size_t loop = loopMasks.empty() ? 0 : loopMasks.back();
    const size_t left = isBreak && !caseMasks.empty() ? std::max(loop, caseMasks.back()) : loop;
    if (left <= returnMask) {
        Fail(statement.place, FxError::Syntax,
             std::string(isBreak ? "'break'" : "'continue'") + " is outside of a loop");
        return;
    }
    Write(masks[left + (isBreak ? 0 : 1)], graph.Literal(0.0f));
}

/// A condition as 1 or 0.
HlRef HlRunner::Truth(const HlExpression& expression)
{
    HlValue value = Evaluate(expression);
    const HlType& truth = *unit.types.Scalar(HlBase::Bool);
    if (value.type->IsError() || !value.type->IsNumber() || value.type->cells != 1) {
        if (!value.type->IsError())
            Fail(expression.begin, FxError::TypeMismatch,
                 "a condition is one number, not " + HlTypes::Name(*value.type));
        return graph.Literal(0.0f);
    }
    Convert(value, truth, expression.place, true);
    return value.refs[0];
}

} // namespace headless::hl
