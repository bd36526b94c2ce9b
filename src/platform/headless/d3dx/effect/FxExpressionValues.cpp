// The operands of an expression: numbers, words, calls, lists.

#include "platform/headless/d3dx/effect/FxExpressionReader.h"

namespace headless::fx {

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

/// Some value names begin with a digit.
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
        if (caller && names.functions.contains(word.text))
            return CallOwn(out);
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

bool FxExpressionReader::Arguments(FxExpression& out, std::vector<Argument>& argumentsOut)
{
    words.Next();
    ++brackets;
    bool isRead = true;
    if (!words.Is(")")) {
        do {
            const FxPlace place = words.Peek().place;
            isRead =
                argumentsOut.size() < 16 || words.Fail(FxError::Limit, "there are too many values");
            isRead = isRead && Choice(out);
            argumentsOut.push_back({out.Shape(), place});
        } while (isRead && words.Accept(","));
    }
    --brackets;
    return isRead && words.Expect(")");
}

bool FxExpressionReader::Construct(const FxType& type, FxExpression& out)
{
    const FxToken name = words.Next();
    std::vector<Argument> arguments;
    if (!type.IsNumeric())
        return words.FailAt(name.place, FxError::TypeMismatch,
                            "no value can become a " + FxDescribe(name));
    if (!Arguments(out, arguments))
        return false;
    UINT count = 0;
    for (const Argument& argument : arguments)
        count += argument.shape.Count();
    const FxShape target = type.Shape();
    if (arguments.size() == 1 && count != target.Count() && FxAddConversion(out, target))
        return true;
    if (count != target.Count())
        return words.FailAt(name.place, FxError::TypeMismatch,
                            FxDescribe(name) + " takes " + std::to_string(target.Count()) +
                                " numbers, not " + std::to_string(count));
    FxStep step = FxStepOf(FxOperation::Construct, target);
    step.count = static_cast<uint32_t>(arguments.size());
    out.Add(step);
    return true;
}

bool FxExpressionReader::Call(const FxIntrinsic& intrinsic, FxExpression& out)
{
    const FxToken name = words.Next();
    std::vector<Argument> arguments;
    if (!Arguments(out, arguments))
        return false;
    std::vector<FxShape> shapes;
    for (const Argument& argument : arguments)
        shapes.push_back(argument.shape);
    FxStep step = FxStepOf(FxOperation::Call, FxShape());
    step.intrinsic = &intrinsic;
    if (shapes.size() != intrinsic.arguments || !intrinsic.shape(shapes, step.shape))
        return words.FailAt(name.place, FxError::TypeMismatch,
                            "the values in brackets do not fit the function " + FxDescribe(name));
    out.Add(step);
    return true;
}

/// A function of the text.
bool FxExpressionReader::CallOwn(FxExpression& out)
{
    const FxToken name = words.Next();
    std::vector<Argument> arguments;
    if (!Arguments(out, arguments))
        return false;
    const std::shared_ptr<const FxComputation> function = caller(name, arguments);
    if (function)
        out.AddFunction(function, arguments.size());
    return function != nullptr;
}

/// Braces inside the list only group, as in initial values of parameters.
bool FxExpressionReader::ReadList(const FxShape& target, FxExpression& out)
{
    out.Clear();
    brackets = 0;
    const FxPlace place = words.Peek().place;
    UINT count = 0;
    uint32_t values = 0;
    size_t level = 0;
    ++brackets;
    do {
        if (words.Accept("{")) {
            ++level;
            continue;
        }
        if (!words.Is("}")) {
            const FxPlace at = words.Peek().place;
            if (!Choice(out))
                return false;
            count += out.Shape().Count();
            ++values;
            if (count > target.Count())
                return words.FailAt(at, FxError::BadInitializer,
                                    "there are more than " + std::to_string(target.Count()) +
                                        " values");
        } else {
            words.Next();
            --level;
        }
        if (level > 0 && !words.Accept(",") && !words.Is("}"))
            return words.Unexpected("',' or '}'");
    } while (level > 0);
    --brackets;
    if (count != target.Count())
        return words.FailAt(place, FxError::BadInitializer,
                            "there are " + std::to_string(count) + " values, not " +
                                std::to_string(target.Count()));
    FxStep step = FxStepOf(FxOperation::Construct, target);
    step.count = values;
    out.Add(step);
    return true;
}

} // namespace headless::fx
