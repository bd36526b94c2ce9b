// Branches and loops.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>
#include <limits>

namespace headless::hl {

namespace {

constexpr int kMaxRounds = 1024;
/// Nested loops that end when a value says so are tried several times: each level costs a factor.
constexpr int kMaxOpenLoops = 4;
/// Steps that are worth a branch.
constexpr size_t kBranchSteps = 24;
constexpr size_t kNowhere = std::numeric_limits<size_t>::max();

HlRef Find(const std::vector<std::pair<uint32_t, HlRef>>& changes, uint32_t slot, HlRef otherwise)
{
    const auto found =
        std::lower_bound(changes.begin(), changes.end(), slot,
                         [](const auto& change, uint32_t wanted) { return change.first < wanted; });
    return found != changes.end() && found->first == slot ? found->second : otherwise;
}

std::vector<uint32_t> SlotsOf(const std::vector<std::pair<uint32_t, HlRef>>& yes,
                              const std::vector<std::pair<uint32_t, HlRef>>& no)
{
    std::vector<uint32_t> result;
    for (const auto* changes : {&yes, &no})
        for (const auto& change : *changes)
            result.push_back(change.first);
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

} // namespace

/// Undoes what was written since the journal began. Gives the new values of the slots that were there.
HlRunner::Changes HlRunner::EndJournal(size_t slotCount)
{
    Changes changes;
    Journal& journal = journals.back();
    for (const auto& [slot, old] : journal)
        if (slot < slotCount)
            changes.emplace_back(slot, slots[slot]);
    for (size_t i = journal.size(); i-- > 0;)
        if (journal[i].first < slotCount)
            slots[journal[i].first] = journal[i].second;
    journals.pop_back();
    std::sort(changes.begin(), changes.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    changes.erase(std::unique(changes.begin(), changes.end(),
                              [](const auto& a, const auto& b) { return a.first == b.first; }),
                  changes.end());
    return changes;
}

// ---- Branches

void HlRunner::RunIf(const HlStatement& statement)
{
    const HlRef condition = Truth(*statement.condition);
    if (const std::optional<float> known = graph.ValueOf(condition)) {
        const Scope scope = OpenScope();
        if (*known != 0.0f)
            Run(*statement.first);
        else if (statement.second)
            Run(*statement.second);
        CloseScope(scope);
        return;
    }
    RunBranches(statement, condition);
}

/// `deadFromOut`: the first mask that this branch has certainly cleared.
HlRunner::Changes HlRunner::RunBranch(const HlStatement* statement, HlRef condition,
                                      size_t& deadFromOut)
{
    const Scope scope = OpenScope();
    journals.emplace_back();
    path.push_back(condition);
    if (statement)
        Run(*statement);
    path.pop_back();
    deadFromOut = kNowhere;
    for (size_t i = masks.size(); i-- > 0;)
        if (graph.IsValue(slots[masks[i]], 0.0f))
            deadFromOut = i;
    CloseScope(scope);
    return EndJournal(scope.slots);
}

/// Both branches run; each slot gets its value by a choice.
void HlRunner::RunBranches(const HlStatement& statement, HlRef condition)
{
    const size_t mark = graph.Mark();
    size_t yesDead = 0, noDead = 0;
    graph.OpenBlock();
    const Changes yes = RunBranch(statement.first, condition, yesDead);
    graph.CloseBlock();
    graph.OpenBlock();
    const Changes no = RunBranch(statement.second, graph.Not(condition), noDead);
    graph.CloseBlock();
    if (!DeservesBranch(statement, mark)) {
        Merge(condition, yes, no, yesDead, noDead);
        return;
    }
    graph.DropEffects(mark);
    BranchForReal(statement, condition, yes, no);
}

/// A slot that is younger than a mask is of no use where the mask is cleared.
void HlRunner::Merge(HlRef condition, const Changes& yes, const Changes& no, size_t yesDead,
                     size_t noDead)
{
    const std::vector<uint32_t> changed = SlotsOf(yes, no);
    for (size_t first = 0; first < changed.size();) {
        size_t count = 1; // neighbours are chosen together
        while (count < 4 && first + count < changed.size() &&
               changed[first + count] == changed[first] + count)
            ++count;
        HlRefs a, b;
        for (size_t i = first; i < first + count; ++i) {
            const uint32_t slot = changed[i];
            const HlRef x = Find(yes, slot, slots[slot]), y = Find(no, slot, slots[slot]);
            const bool isYesOver = heights[slot] > yesDead && noDead == kNowhere;
            const bool isNoOver = heights[slot] > noDead && yesDead == kNowhere;
            a.push_back(isYesOver ? y : x);
            b.push_back(isNoOver ? x : y);
        }
        const HlRefs chosen = graph.Select({condition}, a, b);
        for (size_t i = 0; i < count; ++i)
            Set(changed[first + i], chosen[i]);
        first += count;
    }
}

/// Textures take their level from differences between pixels, which a branch would spoil.
bool HlRunner::DeservesBranch(const HlStatement& statement, size_t mark) const
{
    if (!graph.Profile().hasDynamicFlow || statement.hint == HlHint::Flatten || log.Failed())
        return false;
    size_t steps = 0;
    bool needsNeighbours = false;
    for (size_t i = mark; i < graph.Nodes().size(); ++i) {
        const HlNode& node = graph.Nodes()[i];
        steps += HlIsLeaf(node.op) ? 0 : 1;
        if (node.op == HlOp::Repeat)
            return true;
        needsNeighbours |= node.op == HlOp::Dsx || node.op == HlOp::Dsy ||
                           (node.op == HlOp::Sample &&
                            (node.extra & 15) < static_cast<uint32_t>(HlSampling::Level));
    }
    return !needsNeighbours && (statement.hint == HlHint::Branch || steps >= kBranchSteps);
}

/// Groups of slots that share a place, and their nodes. Neighbours go together.
std::vector<std::pair<uint32_t, std::vector<uint32_t>>>
HlRunner::MakeVariables(const std::vector<uint32_t>& changed)
{
    std::vector<std::pair<uint32_t, std::vector<uint32_t>>> result;
    for (const uint32_t slot : changed) {
        const bool joins = !result.empty() && result.back().second.size() < 4 &&
                           result.back().second.back() + 1 == slot;
        if (!joins)
            result.emplace_back();
        result.back().second.push_back(slot);
    }
    for (auto& [node, group] : result)
        node = graph.Variable(static_cast<unsigned>(group.size()));
    return result;
}

/// Stores the slots' present values. Those that are themselves variables are copied first, so that no
/// value is overwritten before it is read.
void HlRunner::SetVariables(
    const std::vector<std::pair<uint32_t, std::vector<uint32_t>>>& variables)
{
    std::vector<HlRefs> values;
    for (const auto& [node, group] : variables) {
        HlRefs& refs = values.emplace_back();
        bool isMoved = false;
        for (size_t i = 0; i < group.size(); ++i) {
            refs.push_back(slots[group[i]]);
            const HlRef own = {node, static_cast<unsigned>(i)};
            isMoved |= graph.Of(refs[i]).op == HlOp::Variable && refs[i] != own;
        }
        if (isMoved)
            refs = graph.Copy(refs);
    }
    for (size_t i = 0; i < variables.size(); ++i)
        graph.Effect(HlOp::SetVariable, variables[i].first, values[i]);
}

void HlRunner::BranchForReal(const HlStatement& statement, HlRef condition, const Changes& yes,
                             const Changes& no)
{
    const auto variables = MakeVariables(SlotsOf(yes, no));
    SetVariables(variables);
    graph.Effect(HlOp::If, 0, {condition});
    for (const bool isFirst : {true, false}) {
        const HlStatement* const branch = isFirst ? statement.first : statement.second;
        if (!isFirst)
            graph.Effect(HlOp::Else, 0, {});
        const Scope scope = OpenScope();
        graph.OpenBlock();
        journals.emplace_back();
        // A pixel is dropped within its branch, so the path need not tell.
        if (branch)
            Run(*branch);
        SetVariables(variables);
        CloseScope(scope);
        EndJournal(scope.slots);
        graph.CloseBlock();
    }
    graph.Effect(HlOp::EndIf, 0, {});
    for (const auto& [node, group] : variables)
        for (size_t i = 0; i < group.size(); ++i)
            Set(group[i], {node, static_cast<unsigned>(i)});
}

// ---- Loops

/// What the head of `for` declares stays known behind the loop, until the block around it ends: texts of this
/// language use it again in the head of the next loop.
void HlRunner::RunLoop(const HlStatement& statement)
{
    const Scope scope = OpenScope();
    Counter counter;
    const bool declares = statement.first && statement.first->kind == HlStatementKind::Declare;
    if (!declares && statement.step)
        counter = CounterOf(*statement.step);
    if (counter.end > counter.first && statement.first->kind == HlStatementKind::Expression)
        Count(*statement.first->condition, counter);
    else if (statement.first)
        Run(*statement.first);
    if (declares)
        counter = {static_cast<uint32_t>(scope.slots), static_cast<uint32_t>(slots.size()), {}};
    const Scope inner = OpenScope();
    const bool wantsFlow = statement.hint == HlHint::Loop && graph.Profile().hasDynamicFlow &&
                           statement.kind != HlStatementKind::Do;
    if (wantsFlow)
        Settle(counter);
    if (wantsFlow ? !LoopForReal(statement) : !Unroll(statement, counter))
        Fail(statement.place, FxError::Limit,
             "the loop cannot be unrolled: its rounds are not known, or more than 1024");
    CloseScope(inner);
}

/// The variable that `i++` or `i += 2` steps; nothing for another expression.
HlRunner::Counter HlRunner::CounterOf(const HlExpression& step) const
{
    const bool isStep =
        step.kind == HlExpressionKind::Step || step.kind == HlExpressionKind::Assign;
    const Named* const named = isStep && step.parts[0]->kind == HlExpressionKind::Name
                                   ? FindName(step.parts[0]->name)
                                   : nullptr;
    return named ? Counter{named->slot, named->slot + named->type->cells, {}} : Counter();
}

/// Sets or steps what a loop counts by. In copies of the body it counts on whatever values say, so that its
/// numbers stay known; `left` is what it holds where the loop has been left.
void HlRunner::Count(const HlExpression& expression, Counter& counter)
{
    const auto cells = [&] {
        return HlRefs(slots.begin() + counter.first, slots.begin() + counter.end);
    };
    const bool counts = counter.end > counter.first;
    const HlRef live = counts ? Live(heights[counter.first]) : graph.Literal(1.0f);
    if (!graph.IsValue(live, 1.0f) && counter.left.empty())
        counter.left = cells();
    const auto before = std::exchange(freeSlots, {counter.first, counter.end});
    Evaluate(expression);
    freeSlots = before;
    if (!counter.left.empty())
        counter.left = graph.Select({live}, cells(), counter.left);
}

/// Gives the counter the value that it has where the loop was left.
void HlRunner::Settle(Counter& counter)
{
    for (size_t i = 0; i < counter.left.size(); ++i)
        Set(counter.first + static_cast<uint32_t>(i), counter.left[i]);
    counter.left.clear();
}

void HlRunner::RunLoopBody(const HlStatement& statement)
{
    const Scope scope = OpenScope();
    Run(*statement.second);
    CloseScope(scope);
}

/// False if the rounds do not end. The condition may depend on values, as long as a number ends it.
bool HlRunner::Unroll(const HlStatement& statement, Counter& counter)
{
    const bool isDo = statement.kind == HlStatementKind::Do;
    bool isEnded = false;
    loopMasks.push_back(masks.size());
    PushMask();
    PushMask();
    const uint32_t broken = masks[loopMasks.back()], continued = masks[loopMasks.back() + 1];
    for (int round = 0; !isEnded && !HasToStop(); ++round) {
        Set(continued, graph.Literal(1.0f));
        HlRef condition = graph.Literal(1.0f);
        if (statement.condition && (!isDo || round > 0))
            condition = Truth(*statement.condition);
        isEnded = graph.IsValue(condition, 0.0f) || IsDead();
        if (isEnded)
            break;
        if (!graph.ValueOf(condition)) {
            // `do` has run once by now; what is left of it is like `while`.
            const bool isFirst = round == (isDo ? 1 : 0) && graph.IsValue(slots[broken], 1.0f);
            const bool canLoop =
                graph.Profile().hasDynamicFlow ||
                (graph.Profile().hasStaticLoops && StaticCounter(statement) != kHlNoRegister);
            if (isFirst && canLoop && statement.hint != HlHint::Unroll) {
                masks.resize(loopMasks.back());
                loopMasks.pop_back();
                Settle(counter);
                return LoopForReal(statement);
            }
            Write(broken, graph.And(slots[broken], condition));
        }
        if (round >= kMaxRounds)
            break;
        RunLoopBody(statement);
        Set(continued, graph.Literal(1.0f));
        if (statement.step)
            Count(*statement.step, counter);
    }
    Settle(counter);
    masks.resize(loopMasks.back());
    loopMasks.pop_back();
    return isEnded || HasToStop();
}

/// The whole constant that counts the rounds of `for (int i = 0; i < count; ++i)` with a parameter as its
/// count; kHlNoRegister if the loop has another form.
uint32_t HlRunner::StaticCounter(const HlStatement& statement)
{
    const HlExpression* const condition = statement.condition;
    const HlExpression* const step = statement.step;
    if (!condition || !step || condition->kind != HlExpressionKind::Binary ||
        condition->op != HlOperator::Less || step->kind != HlExpressionKind::Step ||
        step->op != HlOperator::Increment || condition->parts[0]->kind != HlExpressionKind::Name ||
        condition->parts[1]->kind != HlExpressionKind::Name ||
        step->parts[0]->kind != HlExpressionKind::Name ||
        step->parts[0]->name != condition->parts[0]->name)
        return kHlNoRegister;
    const HlValue counter = EvaluateName(*condition->parts[0]);
    const HlValue count = EvaluateName(*condition->parts[1]);
    if (!count.type->IsScalar() || count.type->base != HlBase::Int || !counter.type->IsScalar() ||
        !graph.IsValue(counter.refs[0], 0.0f) || graph.Of(count.refs[0]).op != HlOp::Constant)
        return kHlNoRegister;
    const uint32_t number = graph.Of(count.refs[0]).extra;
    HlUniform* const uniform = constants.FindByRegister(number);
    return uniform && uniform->first == number && uniform->count == 1 ? number : kHlNoRegister;
}

bool HlRunner::LoopForReal(const HlStatement& statement)
{
    uint32_t counter = kHlNoRegister;
    if (!graph.Profile().hasDynamicFlow) {
        counter = StaticCounter(statement);
        constants.FindByRegister(counter)->countsRounds = true;
    }
    if (openLoops >= kMaxOpenLoops)
        return Fail(statement.place, FxError::Limit, "the loops are nested too deep");
    ++openLoops;
    std::vector<uint32_t> written;
    bool isDone = false;
    for (int attempt = 0; attempt < 16 && !isDone && !HasToStop(); ++attempt)
        isDone = TryLoop(statement, written, counter);
    --openLoops;
    return isDone || HasToStop();
}

/// Runs a loop whose body writes the slots `written`. False if it writes others too, which are added then.
bool HlRunner::TryLoop(const HlStatement& statement, std::vector<uint32_t>& written,
                       uint32_t counter)
{
    const size_t mark = graph.Mark();
    const size_t slotCount = slots.size();
    graph.OpenBlock();
    journals.emplace_back();
    const auto variables = MakeVariables(written);
    SetVariables(variables);
    for (const auto& [node, group] : variables)
        for (size_t i = 0; i < group.size(); ++i)
            Set(group[i], {node, static_cast<unsigned>(i)});
    graph.Effect(HlOp::Repeat, counter, {});
    loopMasks.push_back(masks.size());
    PushMask();
    PushMask();
    const uint32_t continued = masks[loopMasks.back() + 1];
    if (statement.condition && counter == kHlNoRegister) {
        const HlRef condition = Truth(*statement.condition);
        if (!graph.IsValue(condition, 1.0f))
            graph.Effect(HlOp::BreakIf, 0, {graph.Not(condition)});
    }
    RunLoopBody(statement);
    Set(continued, graph.Literal(1.0f));
    if (statement.step)
        Evaluate(*statement.step);
    const HlRef live = Live(0);
    SetVariables(variables);
    if (!graph.IsValue(live, 1.0f) && counter == kHlNoRegister)
        graph.Effect(HlOp::BreakIf, 0, {graph.Not(live)});
    graph.Effect(HlOp::EndRepeat, 0, {});
    masks.resize(loopMasks.back());
    loopMasks.pop_back();
    slots.resize(slotCount);
    heights.resize(slotCount);
    const Changes changes = EndJournal(slotCount);
    graph.CloseBlock();
    const size_t before = written.size();
    for (const auto& change : changes)
        if (!std::binary_search(written.begin(), written.begin() + static_cast<ptrdiff_t>(before),
                                change.first))
            written.push_back(change.first);
    if (written.size() != before) {
        std::sort(written.begin(), written.end());
        graph.DropEffects(mark);
        return false;
    }
    for (const auto& [node, group] : variables)
        for (size_t i = 0; i < group.size(); ++i)
            Set(group[i], {node, static_cast<unsigned>(i)});
    return true;
}

} // namespace headless::hl
