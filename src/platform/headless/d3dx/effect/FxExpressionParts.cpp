// Parameters in expressions, and parts of values: members, elements, rows, components.

#include "platform/headless/d3dx/effect/FxExpressionReader.h"

namespace headless::fx {

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
            if (!ReadElement(name, parameterOut, indexOut))
                return false;
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

/// One index for each dimension. The elements of all of them lie one after the other.
bool FxExpressionReader::ReadElement(const FxToken& name, const FxParameter*& parameterInOut,
                                     FxExpression& indexOut)
{
    std::vector<UINT> lengths = parameterInOut->dimensions;
    if (lengths.empty())
        lengths.push_back(parameterInOut->elements);
    for (size_t i = 0; i < lengths.size(); ++i) {
        if (i > 0 && !words.Is("["))
            return words.Fail(FxError::BadIndex, FxDescribe(name) + " needs " +
                                                     std::to_string(lengths.size()) + " indices");
        FxExpression index;
        if (!ReadIndex(name, lengths[i], index))
            return false;
        if (lengths.size() > 1 && !index.IsConstant())
            AddClamp(lengths[i], index);
        if (i == 0) {
            indexOut = std::move(index);
            continue;
        }
        FxNumber length;
        length.shape.type = D3DXPT_INT;
        length.SetInt(0, static_cast<int32_t>(lengths[i]));
        indexOut.AddLiteral(length);
        indexOut.Add(FxStepOf(FxOperation::Multiply, {D3DXPT_FLOAT, 1, 1}));
        indexOut.Append(index);
        indexOut.Add(FxStepOf(FxOperation::Add, {D3DXPT_FLOAT, 1, 1}));
    }
    if (!indexOut.IsConstant())
        return true;
    const auto place = static_cast<size_t>(indexOut.Evaluate(scratch).Int(0));
    parameterInOut = parameterInOut->parts[place].get();
    indexOut.Clear();
    return true;
}

/// A known index lies in its dimension.
bool FxExpressionReader::ReadIndex(const FxToken& name, UINT length, FxExpression& indexOut)
{
    const FxPlace place = words.Next().place;
    ++brackets;
    const bool isRead = Choice(indexOut);
    --brackets;
    if (!isRead || !words.Expect("]"))
        return false;
    if (!indexOut.Shape().IsScalar())
        return words.FailAt(place, FxError::BadIndex, "an index is one number");
    if (!indexOut.IsConstant())
        return true;
    const int32_t index = indexOut.Evaluate(scratch).Int(0);
    FxNumber whole;
    whole.shape.type = D3DXPT_INT;
    whole.SetInt(0, index);
    indexOut.Clear();
    indexOut.AddLiteral(whole);
    return (index >= 0 && static_cast<UINT>(index) < length) ||
           words.FailAt(place, FxError::BadIndex,
                        "the index " + std::to_string(index) + " is outside of " +
                            FxDescribe(name));
}

/// An index that changes stays in its dimension, as it would otherwise reach into the next row.
void FxExpressionReader::AddClamp(UINT length, FxExpression& indexInOut)
{
    FxAddConversion(indexInOut, {D3DXPT_INT, 1, 1});
    for (const UINT bound : {0u, length - 1}) {
        FxNumber number;
        number.shape.type = D3DXPT_INT;
        number.SetInt(0, static_cast<int32_t>(bound));
        indexInOut.AddLiteral(number);
    }
    FxStep clamp = FxStepOf(FxOperation::Call, {D3DXPT_FLOAT, 1, 1});
    clamp.intrinsic = FxFindIntrinsic("clamp");
    indexInOut.Add(clamp);
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
        FxStepOf(isElement ? FxOperation::Element : FxOperation::Parameter, parameter->Shape());
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
    out.Add(FxStepOf(FxOperation::Row, {whole.type, 1, isVector ? 1 : whole.columns}));
    return true;
}

bool FxExpressionReader::Component(FxExpression& out)
{
    words.Next();
    const FxToken name = words.Next();
    const FxShape whole = out.Shape();
    FxStep step = FxStepOf(FxOperation::Components, {whole.type, 1, 0});
    const bool fits = name.kind == FxTokenKind::Identifier &&
                      (name.text.starts_with('_') ? MatrixComponents(name.text, whole, step)
                                                  : VectorComponents(name.text, whole, step));
    if (!fits)
        return words.FailAt(name.place, FxError::BadComponent,
                            "the value has no component " + FxDescribe(name));
    out.Add(step);
    return true;
}

/// `xyzw` or `rgba`: one to four letters of one set.
bool FxExpressionReader::VectorComponents(std::string_view text, const FxShape& shape,
                                          FxStep& stepOut)
{
    for (const std::string_view set : {"xyzw", "rgba"}) {
        stepOut.shape.columns = 0;
        for (const char c : text.substr(0, 5)) {
            const size_t component = set.find(c);
            if (component >= shape.columns || stepOut.shape.columns == 4)
                break;
            stepOut.components[stepOut.shape.columns++] = static_cast<uint8_t>(component);
        }
        if (stepOut.shape.columns == text.size() && shape.rows == 1)
            return true;
    }
    return false;
}

/// `_11` counts from 1, `_m00` from 0; one to four of them concatenated.
bool FxExpressionReader::MatrixComponents(std::string_view text, const FxShape& shape,
                                          FxStep& stepOut)
{
    const bool fromZero = text.starts_with("_m");
    const size_t length = fromZero ? 4 : 3;
    for (; text.size() >= length && text.starts_with(fromZero ? "_m" : "_");
         text.remove_prefix(length)) {
        const int base = fromZero ? '0' : '1';
        const UINT row = static_cast<UINT>(text[length - 2] - base);
        const UINT column = static_cast<UINT>(text[length - 1] - base);
        if (row >= shape.rows || column >= shape.columns || stepOut.shape.columns == 4)
            return false;
        stepOut.components[stepOut.shape.columns++] =
            static_cast<uint8_t>(row * shape.columns + column);
    }
    return text.empty() && stepOut.shape.columns > 0;
}

} // namespace headless::fx
