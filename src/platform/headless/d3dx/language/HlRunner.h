#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/headless/d3dx/language/HlConstants.h"
#include "platform/headless/d3dx/language/HlParser.h"

namespace headless::hl {

/// A value while a text is run: its numbers row by row, members and elements one after the other.
struct HlValue {
    const HlType* type = nullptr;
    HlRefs refs;
};

/// Where a value is stored: a slot for each of its numbers.
struct HlPlace {
    const HlType* type = nullptr; ///< null: this is no place
    std::vector<uint32_t> slots;
    // An index that is not known: the slots are those of element 0.
    bool isIndexed = false;
    HlRef index;
    uint32_t stride = 0;
    uint32_t count = 0;
};

/// An input or output of a program.
struct HlBinding {
    std::string_view semantic; ///< without its number
    uint32_t usageIndex = 0;
    FxPlace place;
    HlRef refs[4];     ///< of an output; undefined ones are not written
    unsigned mask = 0; ///< components that are read or written
};

/// Limits that all shaders of an effect share.
struct HlBudget {
    size_t steps = size_t{1} << 20;
};

/// Runs a function on values that are not known yet: each step that cannot be computed becomes one of the
/// graph. Calls dissolve; loops are unrolled if the text tells their rounds; where the target has no flow,
/// both branches run and a choice follows.
class HlRunner {
public:
    /// All arguments outlive this.
    HlRunner(HlUnit& program, HlParser& reader, HlGraph& target, HlConstants& uniforms,
             HlLog& messages, HlBudget& left);

    /// Runs the entry of a shader. `arguments` are those of `compile`. False if there are errors.
    bool RunEntry(HlFunction& function, const std::vector<HlExpression*>& arguments);

    /// Calls a function with values for a value that no shader computes. Of the type `Error` after errors.
    HlValue RunCall(const HlExpression& call, std::vector<HlValue>& arguments);

    std::vector<HlBinding> inputs;
    std::vector<HlBinding> outputs;

private:
    friend class HlIntrinsics;

    struct Named {
        std::string_view name;
        const HlVariable* variable;
        uint32_t slot;
        const HlType* type;
    };
    struct Scope {
        size_t names, slots;
    };
    /// The slots of the variable that a loop counts by; none if `end` is not larger than `first`.
    struct Counter {
        uint32_t first = 0, end = 0;
        HlRefs left; ///< its value where values have left the loop; empty while they could not
    };
    using Journal = std::vector<std::pair<uint32_t, HlRef>>;
    using Changes = std::vector<std::pair<uint32_t, HlRef>>; ///< slots and their new values, sorted

    // HlRunner.cpp
    HlValue ErrorValue() const { return {unit.types.Error(), {}}; }
    bool Fail(FxPlace place, FxError kind, const std::string& text);
    HlValue FailValue(FxPlace place, FxError kind, const std::string& text);
    void Warn(FxPlace place, const std::string& text);
    bool Spend(FxPlace place, size_t steps = 1);
    bool HasToStop() const { return stops || log.IsFull(); }
    uint32_t Allocate(size_t cells, HlRef value);
    Scope OpenScope() const { return {names.size(), slots.size()}; }
    void CloseScope(const Scope& scope);
    const Named* FindName(std::string_view name) const;
    uint32_t Declare(std::string_view name, const HlVariable& variable, const HlType& type);
    HlRef Live(size_t height);
    bool IsDead();
    void Set(uint32_t slot, HlRef value);
    void Write(uint32_t slot, HlRef value);
    void PushMask();
    void PopMask() { masks.pop_back(); }
    bool DeclareGlobals();

    // HlRunnerEntry.cpp
    bool BindInput(const HlType& type, std::string_view semantic, FxPlace place, HlRefs& refsOut);
    bool BindInputRows(const HlType& type, std::string_view name, uint32_t& number, FxPlace place,
                       HlRefs& refsOut);
    bool BindOutput(const HlType& type, std::string_view semantic, FxPlace place,
                    std::span<const HlRef> refs);
    void BindOutputRow(std::string_view name, uint32_t number, FxPlace place,
                       std::span<const HlRef> refs);
    bool EntryParameter(const HlVariable& parameter, const std::vector<HlExpression*>& arguments,
                        size_t& nextInOut);

    // HlRunnerStatements.cpp
    void Run(const HlStatement& statement);
    void RunBlock(const HlStatement& statement);
    void RunCase(const HlStatement& statement);
    void RunDeclaration(const HlStatement& statement);
    void RunReturn(const HlStatement& statement);
    void RunDiscard(HlRef condition);
    void RunJump(const HlStatement& statement);
    HlRef Truth(const HlExpression& expression);
    HlRef PathTruth();

    // HlRunnerFlow.cpp
    void RunIf(const HlStatement& statement);
    void RunBranches(const HlStatement& statement, HlRef condition);
    Changes RunBranch(const HlStatement* statement, HlRef condition, size_t& deadFromOut);
    void Merge(HlRef condition, const Changes& yes, const Changes& no, size_t yesDead,
               size_t noDead);
    void BranchForReal(const HlStatement& statement, HlRef condition, const Changes& yes,
                       const Changes& no);
    bool DeservesBranch(const HlStatement& statement, size_t mark) const;
    void RunLoop(const HlStatement& statement);
    Counter CounterOf(const HlExpression& step) const;
    void Count(const HlExpression& expression, Counter& counter);
    void Settle(Counter& counter);
    bool Unroll(const HlStatement& statement, Counter& counter);
    bool LoopForReal(const HlStatement& statement);
    bool TryLoop(const HlStatement& statement, std::vector<uint32_t>& written, uint32_t counter);
    uint32_t StaticCounter(const HlStatement& statement);
    void RunLoopBody(const HlStatement& statement);
    std::vector<std::pair<uint32_t, std::vector<uint32_t>>>
    MakeVariables(const std::vector<uint32_t>& changed);
    void SetVariables(const std::vector<std::pair<uint32_t, std::vector<uint32_t>>>& variables);
    Changes EndJournal(size_t slotCount);

    // HlRunnerExpressions.cpp
    HlValue Evaluate(const HlExpression& expression);
    HlValue EvaluateOne(const HlExpression& expression);
    HlValue EvaluateName(const HlExpression& expression);
    HlValue EvaluateUnary(const HlExpression& expression);
    HlValue EvaluateBinary(const HlExpression& expression);
    HlValue EvaluateCondition(const HlExpression& expression);
    HlValue EvaluateConstruct(const HlExpression& expression);
    HlValue EvaluateMember(const HlExpression& expression);
    HlValue EvaluateIndex(const HlExpression& expression);
    HlValue Element(const HlValue& value, HlRef index, bool isWhole, FxPlace place);
    HlRefs IndexedConstants(const HlValue& value, HlRef index, uint32_t stride);
    HlValue EvaluateAssign(const HlExpression& expression);
    HlValue EvaluateStep(const HlExpression& expression);
    HlPlace FindPlace(const HlExpression& expression);
    HlPlace IndexPlace(const HlExpression& expression);
    HlValue Load(const HlPlace& place);
    void Store(const HlPlace& place, const HlRefs& refs);
    bool Swizzle(const HlType& type, std::string_view name, FxPlace place,
                 std::vector<uint32_t>& cellsOut, const HlType*& typeOut);

    // HlRunnerOperators.cpp
    HlValue Compute(HlOperator op, HlValue a, HlValue b, FxPlace place);
    bool HasColumns(const HlValue& value) const;
    HlValue Turned(const HlValue& value) const;
    HlValue Arithmetic(HlOperator op, const HlValue& a, const HlValue& b);
    HlValue Comparison(HlOperator op, const HlValue& a, const HlValue& b);
    HlValue Bits(HlOperator op, const HlValue& a, const HlValue& b, FxPlace place);
    bool Unify(HlValue& a, HlValue& b, FxPlace place);
    HlRefs Divide(const HlRefs& a, const HlRefs& b, bool isWhole, unsigned row);
    HlRefs Modulo(const HlRefs& a, const HlRefs& b, bool isWhole, unsigned row);
    HlRefs Truncate(const HlRefs& a, unsigned row);
    HlRefs Floor(const HlRefs& a, unsigned row);
    HlRefs AbsOf(const HlRefs& a, unsigned row);
    HlRefs FractionOf(const HlRefs& a, unsigned row);
    HlRefs Reciprocal(const HlRefs& a);

    // HlConversions.cpp
    bool Convert(HlValue& value, const HlType& type, FxPlace place, bool isExplicit);
    bool ConvertCells(HlValue& value, const HlType& type);
    bool ConvertShape(HlValue& value, const HlType& type, FxPlace place, bool isExplicit);
    void ConvertBase(HlValue& value, HlBase base);
    bool Initialize(const HlType& type, const HlExpression& expression, HlRefs& refsOut);
    void Collect(const HlExpression& expression, std::vector<std::pair<HlRef, HlBase>>& cellsOut);
    int Cost(const HlType& from, const HlType& to) const;

    // HlRunnerCalls.cpp
    HlValue EvaluateCall(const HlExpression& expression);
    HlFunction* ChooseFunction(const HlExpression& expression,
                               const std::vector<HlFunction*>& overloads,
                               const std::vector<HlValue>& arguments);
    HlValue CallFunction(HlFunction& function, const HlExpression& expression,
                         std::vector<HlValue>& arguments);
    HlValue RunFunction(HlFunction& function, std::vector<HlValue>& values);
    void WarnOfUnused(const HlFunction& entry);
    void WarnOfUnused(const HlVariable& variable);

    HlUnit& unit;
    HlParser& parser;
    HlGraph& graph;
    HlConstants& constants;
    HlLog& log;
    HlBudget& budget;

    std::vector<HlRef> slots;
    std::vector<uint16_t> heights; ///< masks that existed when the slot was made
    std::vector<Named> names;
    std::unordered_map<const HlVariable*, size_t>
        globalNames;               ///< constants of the text, in `names`
    size_t frame = 0;              ///< first name that the running function sees
    std::vector<uint32_t> masks;   ///< slots of truths: has not returned, broken, continued
    std::vector<size_t> loopMasks; ///< index of the break mask of each open loop
    std::vector<size_t> caseMasks; ///< index of the break mask of each open case
    std::vector<HlRef> path;       ///< conditions of the branches around
    std::vector<Journal> journals;
    std::pair<uint32_t, uint32_t> freeSlots = {0, 0}; ///< written whatever the masks say
    uint32_t resultSlot = 0;
    const HlFunction* running = nullptr;
    std::vector<const HlFunction*> called; ///< each once
    std::unordered_set<const HlFunction*> calledOnce;
    size_t returnMask = 0;
    int depth = 0;
    int openLoops = 0; ///< real ones
    bool stops = false;
};

} // namespace headless::hl
