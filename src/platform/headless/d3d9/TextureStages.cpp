#include "platform/headless/d3d9/TextureStages.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/ColourParts.h"
#include "platform/headless/d3d9/StageOperations.h"

#include <bit>

namespace headless {

namespace {

constexpr D3DTEXTURESTAGESTATETYPE kColourArguments[] = {D3DTSS_COLORARG0, D3DTSS_COLORARG1,
                                                         D3DTSS_COLORARG2};
constexpr D3DTEXTURESTAGESTATETYPE kAlphaArguments[] = {D3DTSS_ALPHAARG0, D3DTSS_ALPHAARG1,
                                                        D3DTSS_ALPHAARG2};

using StageStates = std::array<DWORD, kStageStateCount>;

bool IsBump(DWORD operation)
{
    return operation == D3DTOP_BUMPENVMAP || operation == D3DTOP_BUMPENVMAPLUMINANCE;
}

/// What one operation of a stage reads.
struct Reads {
    bool diffuse = false;
    bool specular = false;
    bool texture = false;

    void Add(int source)
    {
        diffuse |= source == D3DTA_DIFFUSE;
        specular |= source == D3DTA_SPECULAR;
        texture |= source == D3DTA_TEXTURE;
    }
};

/// Resolves the colour or the alpha half of a stage.
HRESULT MakeOperation(const StageStates& states, bool isAlpha, bool hasTexture,
                      StageOperation& operationOut, Reads& readsInOut)
{
    const DWORD number = states[isAlpha ? D3DTSS_ALPHAOP : D3DTSS_COLOROP];
    operationOut = {};
    if (number == D3DTOP_DISABLE)
        return D3D_OK;
    const OperationRow* row = FindOperation(number);
    if (!row)
        return Unmodelled(isAlpha ? "D3DTSS_ALPHAOP" : "D3DTSS_COLOROP", number);
    Reads reads;
    StageOperation operation;
    operation.operation = number;
    for (size_t i = 0; i < 3; ++i) {
        if ((row->arguments >> i & 1) == 0)
            continue;
        const DWORD value = states[isAlpha ? kAlphaArguments[i] : kColourArguments[i]];
        const DWORD source = value & D3DTA_SELECTMASK;
        if (source > D3DTA_CONSTANT)
            return Unmodelled(isAlpha ? "D3DTSS_ALPHAARG" : "D3DTSS_COLORARG", value);
        operation.arguments[i] = {static_cast<uint8_t>(source), (value & D3DTA_COMPLEMENT) != 0,
                                  (value & D3DTA_ALPHAREPLICATE) != 0};
        reads.Add(static_cast<int>(source));
    }
    if (reads.texture && !hasTexture)
        return D3D_OK; // pass the current value through
    if (row->shareFrom >= 0) {
        operation.shareFrom = static_cast<uint8_t>(row->shareFrom);
        reads.Add(row->shareFrom);
    }
    operationOut = operation;
    readsInOut.diffuse |= reads.diffuse;
    readsInOut.specular |= reads.specular;
    readsInOut.texture |= reads.texture;
    return D3D_OK;
}

void MakeBump(const StageStates& states, bool hasTexture, StageProgram& stage)
{
    if (!IsBump(states[D3DTSS_COLOROP]) || !hasTexture)
        return;
    stage.bump = states[D3DTSS_COLOROP] == D3DTOP_BUMPENVMAP ? BumpKind::Offsets
                                                             : BumpKind::OffsetsAndLuminance;
    const auto number = [&states](D3DTEXTURESTAGESTATETYPE type) {
        return std::bit_cast<float>(states[type]);
    };
    stage.bumpMatrix[0][0] = number(D3DTSS_BUMPENVMAT00);
    stage.bumpMatrix[0][1] = number(D3DTSS_BUMPENVMAT01);
    stage.bumpMatrix[1][0] = number(D3DTSS_BUMPENVMAT10);
    stage.bumpMatrix[1][1] = number(D3DTSS_BUMPENVMAT11);
    stage.luminanceScale = number(D3DTSS_BUMPENVLSCALE);
    stage.luminanceOffset = number(D3DTSS_BUMPENVLOFFSET);
}

/// Where the coordinates come from and how they are transformed; called only for stages that
/// sample.
HRESULT CheckCoordinates(const StageStates& states)
{
    const DWORD index = states[D3DTSS_TEXCOORDINDEX];
    if (index >> 16 > D3DTSS_TCI_SPHEREMAP >> 16 || (index & 0xFFFF) >= D3DDP_MAXTEXCOORD)
        return Unmodelled("D3DTSS_TEXCOORDINDEX", index);
    const DWORD flags = states[D3DTSS_TEXTURETRANSFORMFLAGS];
    if ((flags & ~static_cast<DWORD>(D3DTTFF_PROJECTED)) > D3DTTFF_COUNT4)
        return Unmodelled("D3DTSS_TEXTURETRANSFORMFLAGS", flags);
    return D3D_OK;
}

/// Both halves of a stage, and the register that takes their result.
HRESULT MakeOperations(const StageStates& states, bool hasTexture, StageProgram& stage,
                       Reads& reads)
{
    HRESULT result = MakeOperation(states, false, hasTexture, stage.colour, reads);
    if (SUCCEEDED(result))
        result = MakeOperation(states, true, hasTexture, stage.alpha, reads);
    const DWORD target = states[D3DTSS_RESULTARG];
    if (SUCCEEDED(result) && target != D3DTA_CURRENT && target != D3DTA_TEMP)
        result = Unmodelled("D3DTSS_RESULTARG", target);
    return result;
}

HRESULT MakeStage(const DrawState& state, UINT index, StagePrograms& programs)
{
    const StageStates& states = state.stage[index];
    StageProgram& stage = programs.stages[index];
    const bool hasTexture = state.pictures[index] != nullptr;
    Reads reads;
    HRESULT result = MakeOperations(states, hasTexture, stage, reads);
    if (FAILED(result))
        return result;
    stage.bump = BumpKind::None;
    MakeBump(states, hasTexture, stage);
    stage.doublesAsAlpha =
        states[D3DTSS_COLOROP] == D3DTOP_DOTPRODUCT3 && stage.colour.operation != 0;
    const bool isPremodulated = index > 0 && programs.stages[index - 1].isModulatedByNext;
    stage.isPremodulated = isPremodulated && hasTexture;
    stage.isModulatedByNext = states[D3DTSS_COLOROP] == D3DTOP_PREMODULATE;
    stage.writesTemp = states[D3DTSS_RESULTARG] == D3DTA_TEMP;
    UnpackColour(states[D3DTSS_CONSTANT], stage.constant);
    stage.samples = hasTexture && (reads.texture || stage.bump != BumpKind::None || isPremodulated);
    stage.isProjected = (states[D3DTSS_TEXTURETRANSFORMFLAGS] & D3DTTFF_PROJECTED) != 0;
    programs.readsDiffuse |= reads.diffuse;
    programs.readsSpecular |= reads.specular;
    if (!stage.samples)
        return D3D_OK;
    result = CheckCoordinates(states);
    if (SUCCEEDED(result))
        result = MakeSampler(state, index, stage.sampler);
    stage.needsLevel = stage.sampler.NeedsLevel();
    stage.needsFootprint = stage.sampler.NeedsFootprint();
    stage.coordinateCount = stage.sampler.kind == TextureKind::Flat ? 2 : 3;
    return result;
}

} // namespace

HRESULT MakeStagePrograms(const DrawState& state, StagePrograms& programsOut)
{
    programsOut.count = 0;
    programsOut.readsDiffuse = true; // the first stage's current colour
    programsOut.readsSpecular = false;
    UnpackColour(state.Render(D3DRS_TEXTUREFACTOR), programsOut.factor);
    for (UINT i = 0; i < kStageCount; ++i) {
        if (state.stage[i][D3DTSS_COLOROP] == D3DTOP_DISABLE)
            break;
        if (const HRESULT result = MakeStage(state, i, programsOut); FAILED(result))
            return result;
        programsOut.count = static_cast<int>(i) + 1;
    }
    return D3D_OK;
}

HRESULT CheckStageStates(const DrawState& state)
{
    bool isPremodulated = false;
    for (UINT i = 0; i < kStageCount; ++i) {
        const StageStates& states = state.stage[i];
        if (states[D3DTSS_COLOROP] == D3DTOP_DISABLE)
            break;
        StageProgram stage;
        Reads reads;
        HRESULT result = MakeOperations(states, true, stage, reads);
        const bool samples = reads.texture || isPremodulated || IsBump(states[D3DTSS_COLOROP]);
        if (SUCCEEDED(result) && samples)
            result = CheckCoordinates(states);
        if (SUCCEEDED(result) && samples)
            result = CheckSamplerStates(state, i);
        if (FAILED(result))
            return result;
        isPremodulated = states[D3DTSS_COLOROP] == D3DTOP_PREMODULATE;
    }
    return D3D_OK;
}

} // namespace headless
