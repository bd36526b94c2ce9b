#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxExpression.h"
#include "platform/headless/d3dx/effect/FxProgram.h"
#include "platform/headless/d3dx/language/HlGraph.h"

namespace headless::fx {

/// Which parameters of an effect a program can read: by their names, as a caller of the effect sees them.
struct FxVisibleParameters {
    /// Every part of every parameter, with the whole that it belongs to.
    std::map<const FxParameter*, const FxParameter*> wholes;

    explicit FxVisibleParameters(const std::vector<std::unique_ptr<FxParameter>>& parameters);
    bool Has(const FxParameter& part) const { return wholes.contains(&part); }
};

/// Translates an expression into a computation in compiled form, whose value lies in the float outputs.
class FxProgramWriter {
public:
    explicit FxProgramWriter(const FxVisibleParameters& visible) : parameters(visible) {}

    /// False with the reason if the expression needs something that a computation lacks.
    bool Write(const FxExpression& expression, std::vector<DWORD>& codeOut, std::string& reasonOut);
    /// The same for a vector that becomes a packed colour. The result is a float before it becomes an
    /// integer, which is exact where alpha is 0 or 1; between them the low bits are lost.
    bool WriteColour(const FxExpression& expression, std::vector<DWORD>& codeOut,
                     std::string& reasonOut);

private:
    using Place = FxProgramPlace;
    /// The places of a value's numbers, row by row.
    struct Value {
        FxShape shape;
        std::vector<Place> cells;

        /// A scalar stands for every number.
        const Place& At(UINT i) const { return cells[cells.size() == 1 ? 0 : i]; }
    };

    bool Steps(const FxExpression& expression);
    void Finish(std::vector<DWORD>& codeOut);
    static UINT RunOf(const Value& value, UINT first);
    Place Packed(const Value& colour);
    bool Step(const FxExpression& expression, const FxStep& step);
    bool Fail(const std::string& what);
    Value Pop();

    // Operands
    Place Literal(double value);
    Value LiteralValue(const FxNumber& number);
    Value Load(const FxParameter& parameter);
    UINT RegisterOf(const FxParameter& part);
    bool Element(const FxStep& step);
    bool Row(const FxStep& step);
    Place Choice(const Place& index, const std::vector<Place>& among);

    // Operations
    Place Emit(unsigned operation, const std::vector<Place>& sources);
    Place Negated(const Place& a) { return Emit(0x101, {a}); }
    Place Sum(const Place& a, const Place& b) { return Emit(0x204, {a, b}); }
    Place Product(const Place& a, const Place& b) { return Emit(0x205, {a, b}); }
    /// In braces two operands are computed from left to right by every compiler, so that all builds of the
    /// program write the same bytes.
    struct Two {
        Place a, b;
    };
    Place Sum(const Two& of) { return Sum(of.a, of.b); }
    Place Product(const Two& of) { return Product(of.a, of.b); }
    Place Quotient(const Two& of) { return Quotient(of.a, of.b); }
    Place Difference(const Two& of) { return Difference(of.a, of.b); }
    Place Quotient(const Place& a, const Place& b) { return Product(a, Emit(0x103, {b})); }
    Place Difference(const Place& a, const Place& b) { return Sum(a, Negated(b)); }
    Place Same(const Place& a, const Place& b)
    {
        return Product({Emit(0x203, {a, b}), Emit(0x203, {b, a})});
    }
    Place Opposite(const Place& truth) { return Difference(Literal(1.0), truth); }
    Place Truth(const Place& a) { return Opposite(Same(a, Literal(0.0))); }
    Place Floor(const Place& a) { return Difference(a, Emit(0x104, {a})); }
    Place Whole(const Place& a);
    Place Root(const Place& a);
    Place Dot(const Value& a, const Value& b);
    Place Converted(const Place& a, D3DXPARAMETER_TYPE from, D3DXPARAMETER_TYPE to);
    bool Binary(const FxStep& step);
    Place Compute(FxOperation operation, const Place& a, const Place& b);
    bool Call(const FxStep& step);
    Place Rounded(const Place& a);
    Place Rarer(std::string_view name, const Place& a, const Place& b);
    Value CallByComponent(const FxStep& step, const std::vector<Value>& arguments);
    Value CallWhole(const FxStep& step, const std::vector<Value>& arguments);
    Place Determinant(const std::vector<Place>& cells, UINT size);
    std::vector<Place> Mixed(const FxStep& step, const std::vector<Value>& arguments);
    bool Function(const FxStep& step);
    Place Leaf(const FxComputation& function, const hl::HlNode& leaf, unsigned lane,
               const std::vector<Place>& arguments);
    Place Lane(hl::HlOp op, const Place& a, const Place& b, const Place& c);
    std::vector<Place> Lanes(const hl::HlNode& step, const std::array<Value, 3>& sources);
    Place Power(const Place& base, const Place& exponent);
    Value Multiplied(const FxStep& step, const Value& a, const Value& b);

    const FxVisibleParameters& parameters;
    std::vector<Value> stack;
    std::vector<double> literals;
    std::map<const FxParameter*, UINT> inputs; ///< wholes, with their first registers
    UINT inputRegisters = 0;
    UINT temporaries = 0;
    UINT instructionCount = 0;
    std::vector<DWORD> instructions;
    std::string reason;
};

/// The registers that a parameter takes in a constant table: one for each row of its numbers.
UINT FxRegistersOf(const FxParameter& parameter);
/// The words of a constant table for whole parameters from their first registers on.
std::vector<DWORD>
FxWriteConstantTable(const std::vector<std::pair<const FxParameter*, UINT>>& rows);
/// A comment of a program.
void FxAppendComment(std::vector<DWORD>& code, std::string_view letters,
                     const std::vector<DWORD>& words);

} // namespace headless::fx
