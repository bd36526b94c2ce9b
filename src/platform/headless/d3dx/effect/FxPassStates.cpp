#include "platform/headless/d3dx/effect/FxPassStates.h"

#include "platform/headless/d3dx/effect/FxShader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace headless::fx {

namespace {

/// The defaults of a light that has not been set: white, along the z axis.
D3DLIGHT9 FirstLight()
{
    D3DLIGHT9 light = {};
    light.Type = D3DLIGHT_DIRECTIONAL;
    light.Diffuse = {1.0f, 1.0f, 1.0f, 0.0f};
    light.Direction = {0.0f, 0.0f, 1.0f};
    return light;
}

bool IsRecord(FxStateKind kind)
{
    return kind == FxStateKind::Material || kind == FxStateKind::Light;
}

void Keep(HRESULT result, HRESULT& firstInOut)
{
    if (FAILED(result) && SUCCEEDED(firstInOut))
        firstInOut = result;
}

} // namespace

HRESULT FxPassStates::Apply(IDirect3DDevice9& device, const FxPass& pass, uint64_t changedAfter)
{
    HRESULT first = D3D_OK;
    refused = nullptr;
    sentRecords.clear();
    for (const FxAssignment& assignment : pass.states) {
        if (changedAfter != 0 && assignment.Newest() <= changedAfter)
            continue;
        const HRESULT result = IsRecord(assignment.state->kind)
                                   ? ApplyRecord(device, pass, assignment)
                                   : ApplyOne(device, assignment);
        if (FAILED(result) && !refused)
            refused = &assignment;
        Keep(result, first);
    }
    return first;
}

std::string FxPassStates::Refused() const
{
    if (!refused)
        return "";
    const FxState& state = *refused->state;
    const std::string place = state.places > 1 ? "[" + std::to_string(refused->index) + "]" : "";
    return std::string(state.name) + place;
}

DWORD FxPassStates::Word(const FxAssignment& assignment)
{
    const FxNumber number = assignment.value.Evaluate(scratch);
    if (assignment.isConverted && number.shape.IsScalar())
        return number.cells[0];
    switch (assignment.state->value) {
    case FxStateValue::Truth:
        return number.Bool(0) ? 1 : 0;
    case FxStateValue::Float:
        return std::bit_cast<DWORD>(number.Float(0));
    case FxStateValue::Color: {
        if (number.shape.IsScalar())
            break;
        const float color[] = {number.Float(0), number.Float(1), number.Float(2),
                               number.shape.columns > 3 ? number.Float(3) : 0.0f};
        return FxPackColor(color, number.shape.columns);
    }
    default:
        break;
    }
    return static_cast<DWORD>(number.Int(0));
}

D3DMATRIX FxPassStates::Matrix(const FxExpression& value)
{
    const FxNumber number = value.Evaluate(scratch);
    D3DMATRIX matrix = {};
    for (UINT i = 0; i < 16; ++i)
        matrix.m[i / 4][i % 4] = number.Float(i);
    return matrix;
}

HRESULT FxPassStates::ApplyTexture(IDirect3DDevice9& device, UINT stage, const FxObject& object)
{
    const FxParameter* parameter = object.Resolve(scratch);
    return device.SetTexture(stage, parameter ? parameter->storage->textures[parameter->first].Get()
                                              : nullptr);
}

HRESULT FxPassStates::ApplySampler(IDirect3DDevice9& device, UINT index, const FxParameter* sampler)
{
    HRESULT first = D3D_OK;
    if (!sampler)
        return device.SetTexture(index, nullptr);
    for (const FxAssignment& inner : sampler->samplerStates) {
        const FxState& state = *inner.state;
        Keep(state.kind == FxStateKind::Texture
                 ? ApplyTexture(device, index, inner.object)
                 : device.SetSamplerState(index, static_cast<D3DSAMPLERSTATETYPE>(state.number),
                                          Word(inner)),
             first);
    }
    return first;
}

/// A compiled shader brings its constants and samplers along.
HRESULT FxPassStates::ApplyShader(IDirect3DDevice9& device, const FxAssignment& assignment)
{
    const bool isVertex = assignment.state->kind == FxStateKind::VertexShader;
    const FxParameter* parameter = assignment.object.Resolve(scratch);
    FxShader* shader = assignment.shader ? assignment.shader.get()
                                         : (parameter ? parameter->shader.get() : nullptr);
    if (!shader)
        return isVertex ? device.SetVertexShader(nullptr) : device.SetPixelShader(nullptr);
    HRESULT first = shader->Set(device, isVertex);
    Keep(shader->SetConstants(device, isVertex), first);
    const UINT firstSampler = isVertex ? D3DVERTEXTEXTURESAMPLER0 : 0;
    for (const FxSamplerBinding& row : shader->inputs.samplers)
        Keep(ApplySampler(device, firstSampler + row.index, row.sampler), first);
    return first;
}

/// A row of a matrix fills a register; missing components are 0. Compiled effects set one register right, and 0
/// behind it, as the system's do.
HRESULT FxPassStates::ApplyRegisters(IDirect3DDevice9& device, const FxAssignment& assignment)
{
    const FxNumber number = assignment.value.Evaluate(scratch);
    const bool isVertex = assignment.state->floats != 0;
    const UINT rows = number.shape.rows, columns = number.shape.columns;
    const UINT one = assignment.state->number == kFxTruthRegisters ? 1 : columns;
    const UINT count = assignment.isConverted ? one : rows * columns;
    float floats[16] = {};
    int ints[16] = {};
    BOOL bools[16] = {};
    for (UINT i = 0; i < count && i < 16; ++i) {
        const UINT at = i / columns * 4 + i % columns;
        floats[at] = number.Float(i);
        ints[at] = number.Int(i);
        bools[i] = number.Bool(i) ? TRUE : FALSE;
    }
    const UINT first = assignment.index;
    switch (assignment.state->number) {
    case kFxWholeRegisters:
        return isVertex ? device.SetVertexShaderConstantI(first, ints, rows)
                        : device.SetPixelShaderConstantI(first, ints, rows);
    case kFxTruthRegisters:
        return isVertex ? device.SetVertexShaderConstantB(first, bools, rows * columns)
                        : device.SetPixelShaderConstantB(first, bools, rows * columns);
    default:
        return isVertex ? device.SetVertexShaderConstantF(first, floats, rows)
                        : device.SetPixelShaderConstantF(first, floats, rows);
    }
}

HRESULT FxPassStates::ApplyOne(IDirect3DDevice9& device, const FxAssignment& assignment)
{
    const FxState& state = *assignment.state;
    const UINT index = assignment.index;
    switch (state.kind) {
    case FxStateKind::Render:
        return device.SetRenderState(static_cast<D3DRENDERSTATETYPE>(state.number),
                                     Word(assignment));
    case FxStateKind::Stage:
        return device.SetTextureStageState(
            index, static_cast<D3DTEXTURESTAGESTATETYPE>(state.number), Word(assignment));
    case FxStateKind::Sampler:
        return device.SetSamplerState(index, static_cast<D3DSAMPLERSTATETYPE>(state.number),
                                      Word(assignment));
    case FxStateKind::Transform: {
        const D3DMATRIX matrix = Matrix(assignment.value);
        return device.SetTransform(static_cast<D3DTRANSFORMSTATETYPE>(state.number + index),
                                   &matrix);
    }
    case FxStateKind::LightEnable:
        return device.LightEnable(index, Word(assignment) != 0);
    case FxStateKind::Texture:
        return ApplyTexture(device, index, assignment.object);
    case FxStateKind::SamplerObject:
        return ApplySampler(device, index, assignment.object.Resolve(scratch));
    case FxStateKind::VertexShader:
    case FxStateKind::PixelShader:
        return ApplyShader(device, assignment);
    case FxStateKind::ShaderConstant:
        return ApplyRegisters(device, assignment);
    case FxStateKind::VertexFormat:
        return device.SetFVF(Word(assignment));
    case FxStateKind::PatchSegments:
        return device.SetNPatchMode(std::bit_cast<float>(Word(assignment)));
    default:
        return D3D_OK;
    }
}

// ---- The material and the lights, which the device takes as a whole

/// Stores all fields of one record that the pass assigns, in order.
void FxPassStates::PutFields(const FxPass& pass, const FxAssignment& first, void* recordOut)
{
    auto* bytes = static_cast<unsigned char*>(recordOut);
    for (const FxAssignment& assignment : pass.states) {
        const FxState& state = *assignment.state;
        if (state.kind != first.state->kind || assignment.index != first.index)
            continue;
        unsigned char* field = bytes + size_t{state.number} * sizeof(float);
        if (state.value == FxStateValue::Floats) {
            const FxNumber number = assignment.value.Evaluate(scratch);
            std::memcpy(field, number.cells.data(), state.floats * sizeof(float));
        } else {
            // The only such field is a light's type, whose enumeration has 31 bits.
            const DWORD word = Word(assignment) & D3DLIGHT_FORCE_DWORD;
            std::memcpy(field, &word, sizeof word);
        }
    }
}

HRESULT FxPassStates::ApplyRecord(IDirect3DDevice9& device, const FxPass& pass,
                                  const FxAssignment& first)
{
    const FxStateKey key = {first.state->kind, first.index, 0};
    if (std::find(sentRecords.begin(), sentRecords.end(), key) != sentRecords.end())
        return D3D_OK;
    sentRecords.push_back(key);
    if (key.kind == FxStateKind::Material) {
        D3DMATERIAL9 material = {};
        const HRESULT result = device.GetMaterial(&material);
        PutFields(pass, first, &material);
        return FAILED(result) ? result : device.SetMaterial(&material);
    }
    D3DLIGHT9 light = {};
    if (FAILED(device.GetLight(key.index, &light)))
        light = FirstLight();
    PutFields(pass, first, &light);
    return device.SetLight(key.index, &light);
}

} // namespace headless::fx
