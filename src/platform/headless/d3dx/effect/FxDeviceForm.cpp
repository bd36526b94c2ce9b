#include "platform/headless/d3dx/effect/FxDeviceForm.h"

namespace headless::fx {

namespace {

/// The type in which the device takes a state.
D3DXPARAMETER_TYPE DeviceType(const FxState& state)
{
    switch (state.value) {
    case FxStateValue::Truth:
        return D3DXPT_BOOL;
    case FxStateValue::Float:
    case FxStateValue::Floats:
    case FxStateValue::Matrix:
        return D3DXPT_FLOAT;
    case FxStateValue::Registers:
        return state.number == kFxFloatRegisters   ? D3DXPT_FLOAT
               : state.number == kFxWholeRegisters ? D3DXPT_INT
                                                   : D3DXPT_BOOL;
    default:
        return D3DXPT_INT;
    }
}

/// One register of several that a state sets: some cells of the value, filled with 0.
FxAssignment OneRegister(const FxAssignment& whole, UINT number, UINT columns)
{
    FxAssignment one = whole;
    const D3DXPARAMETER_TYPE type = whole.value.Shape().type;
    const UINT wanted = FxDeviceShape(whole).columns;
    one.index += number;
    FxStep cells = FxStepOf(FxOperation::Components, {type, 1, columns});
    for (UINT i = 0; i < columns; ++i)
        cells.components[i] = static_cast<uint8_t>(number * columns + i);
    one.value.Add(cells);
    if (columns == wanted)
        return one;
    FxNumber zeros;
    zeros.shape = {type, 1, wanted - columns};
    one.value.AddLiteral(zeros);
    FxStep filled = FxStepOf(FxOperation::Construct, {type, 1, wanted});
    filled.count = 2;
    one.value.Add(filled);
    return one;
}

} // namespace

FxShape FxDeviceShape(const FxAssignment& assignment)
{
    const FxState& state = *assignment.state;
    const D3DXPARAMETER_TYPE type = DeviceType(state);
    switch (state.value) {
    case FxStateValue::Floats:
        return {type, 1, state.floats};
    case FxStateValue::Matrix:
        return {type, 4, 4};
    case FxStateValue::Registers:
        return {type, 1, state.number == kFxTruthRegisters ? 1u : 4u};
    default:
        return {type, 1, 1};
    }
}

std::vector<FxAssignment> FxByRegisters(const std::vector<FxAssignment>& states)
{
    std::vector<FxAssignment> list;
    for (const FxAssignment& state : states) {
        const FxShape shape = state.value.Shape();
        const bool isConstant = state.state->value == FxStateValue::Registers;
        if (!isConstant || shape.HasSameForm(FxDeviceShape(state))) {
            list.push_back(state);
            continue;
        }
        const bool isTruth = state.state->number == kFxTruthRegisters;
        const UINT count = isTruth ? shape.Count() : shape.rows;
        for (UINT i = 0; i < count; ++i)
            list.push_back(OneRegister(state, i, shape.Count() / count));
    }
    return list;
}

} // namespace headless::fx
