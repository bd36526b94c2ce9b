#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/headless/d3dx/effect/FxComputation.h"
#include "platform/headless/d3dx/effect/FxParameter.h"
#include "platform/headless/d3dx/effect/FxTypes.h"
#include "platform/headless/d3dx/effect/FxWords.h"

namespace headless::fx {

/// Reads expressions and checks their types, so that evaluation cannot fail.
class FxExpressionReader {
public:
    FxExpressionReader(FxWords& text, const FxNames& known) : words(text), names(known) {}

    /// The value names of a state, which take precedence over parameters of the same name; null for
    /// none.
    void SetStateWords(const FxStateWords* table) { stateWords = table; }
    /// In angle brackets parameters take precedence over value names, and `>` ends the expression.
    void SetInAngles(bool value) { inAngles = value; }

    struct Argument {
        FxShape shape;
        FxPlace place;
    };
    /// Compiles a call of a function of the text. Null after an error.
    using Caller = std::function<std::shared_ptr<const FxComputation>(
        const FxToken& function, const std::vector<Argument>& arguments)>;
    /// Without one the text's functions are unknown.
    void SetCaller(Caller value) { caller = std::move(value); }

    bool Read(FxExpression& expressionOut);
    /// A list in braces of as many numbers as `target` has, row by row.
    bool ReadList(const FxShape& target, FxExpression& expressionOut);
    /// One number, evaluated with the current parameter values, such as an array size.
    bool ReadConstant(int32_t& valueOut);
    /// A parameter or a part of it, number or object: `a`, `a.b`, `a[2]`. An index that is not
    /// known yet is returned in `indexOut`, together with the array.
    bool ReadParameter(const FxParameter*& parameterOut, FxExpression& indexOut);

private:
    struct Level;

    bool Choice(FxExpression& out);
    bool Binary(int lowestRank, FxExpression& out);
    bool Unary(FxExpression& out);
    bool Postfix(FxExpression& out);
    bool Primary(FxExpression& out);
    bool Name(FxExpression& out);
    bool StateWord(const FxToken& word, FxExpression& out);
    bool Literal(FxExpression& out);
    bool Cast(FxExpression& out);
    bool Construct(const FxType& type, FxExpression& out);
    bool Call(const FxIntrinsic& intrinsic, FxExpression& out);
    bool CallOwn(FxExpression& out);
    bool Arguments(FxExpression& out, std::vector<Argument>& argumentsOut);
    bool LoadParameter(FxExpression& out);
    bool ReadElement(const FxToken& name, const FxParameter*& parameterInOut,
                     FxExpression& indexOut);
    bool ReadIndex(const FxToken& name, UINT length, FxExpression& indexOut);
    static void AddClamp(UINT length, FxExpression& indexInOut);
    bool Component(FxExpression& out);
    bool MatrixComponents(std::string_view text, const FxShape& shape, FxStep& stepOut);
    bool VectorComponents(std::string_view text, const FxShape& shape, FxStep& stepOut);
    bool Index(FxExpression& out);
    bool AddBinary(const FxToken& sign, FxOperation operation, FxShape left, FxExpression& out);
    bool IsInAngles() const { return inAngles && brackets == 0; }
    bool StopsHere() const;

    FxWords& words;
    const FxNames& names;
    const FxStateWords* stateWords = nullptr;
    bool inAngles = false;
    int brackets = 0;
    int depth = 0;
    Caller caller;
    std::vector<FxNumber> scratch;
};

/// Adds the conversion to `target`: a scalar fills it, surplus rows or columns are dropped. False
/// if there are too few.
bool FxAddConversion(FxExpression& expressionInOut, const FxShape& target);

} // namespace headless::fx
