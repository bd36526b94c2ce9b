#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/headless/d3dx/effect/FxIntrinsics.h"
#include "platform/headless/d3dx/effect/FxNumber.h"

namespace headless::fx {

struct FxParameter;
class FxComputation;
class FxProgram;

enum class FxOperation : uint8_t {
    Literal,
    Parameter,
    Element, ///< of an array parameter; the index is on the stack
    Negate,
    Not,
    Complement,
    Or,
    And,
    BitOr,
    BitXor,
    BitAnd,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    ShiftLeft,
    ShiftRight,
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Choose,     ///< condition, value if true, value if false
    Convert,    ///< to the step's shape; a scalar fills it, a larger value is truncated
    Construct,  ///< the cells of `count` values, concatenated
    Components, ///< the cells selected by `components`
    Row,        ///< of a vector or matrix; the index is on the stack
    Call,
    Function, ///< of the effect's text, with `count` values
    Program,  ///< a computation in compiled form
};

/// One step of an expression in postfix order.
struct FxStep {
    FxOperation operation = FxOperation::Literal;
    FxShape shape;      ///< of the result
    uint32_t count = 0; ///< literal number, or number of values
    std::array<uint8_t, 4> components = {};
    const FxParameter* parameter = nullptr;  ///< not owned, lives in the effect
    const FxIntrinsic* intrinsic = nullptr;  ///< not owned, lives in its table
    const FxComputation* function = nullptr; ///< not owned, lives in the expression
};

inline FxStep FxStepOf(FxOperation operation, const FxShape& shape)
{
    FxStep step;
    step.operation = operation;
    step.shape = shape;
    return step;
}

/// The computation of an assignment, type-checked when the effect was created: evaluation cannot
/// fail.
class FxExpression {
public:
    FxShape Shape() const { return steps.empty() ? FxShape() : steps.back().shape; }
    bool IsEmpty() const { return steps.empty(); }
    /// A computation in compiled form, which gives a value of the shape.
    void AddProgram(std::shared_ptr<FxProgram> compiled, const FxShape& shape);

    /// A function of the effect's text with the `arguments` last values.
    void AddFunction(std::shared_ptr<const FxComputation> function, size_t arguments);

    void Add(const FxStep& step) { steps.push_back(step); }
    void AddLiteral(const FxNumber& number);
    /// True if no parameter is read, so that the value never changes.
    bool IsConstant() const;
    void Clear();
    /// Appends the steps of `other`.
    void Append(const FxExpression& other);

    /// `scratch` is working memory that the caller keeps between calls.
    FxNumber Evaluate(std::vector<FxNumber>& scratch) const;

    const std::vector<FxStep>& Steps() const { return steps; }
    const FxNumber& Literal(const FxStep& step) const { return literals[step.count]; }
    /// Of the step that runs it; null if none does.
    const FxProgram* Program() const { return program.get(); }

    /// Whether `parameter` lies in `root`, which a step reads in part.
    bool Reads(const FxParameter& parameter) const;
    /// The stamp of the newest change to a parameter that is read; 0 if none is.
    uint64_t Newest() const;

private:
    std::vector<FxStep> steps;
    std::vector<FxNumber> literals;
    std::vector<std::shared_ptr<const FxComputation>> functions;
    std::shared_ptr<FxProgram> program; ///< null if no step runs it
};

} // namespace headless::fx
