#include "platform/headless/d3d9/StageOperations.h"

namespace headless {

namespace {

constexpr uint8_t kArg1 = 2, kArg2 = 4, kBoth = 6, kAll = 7;

constexpr OperationRow kStageOperations[] = {
    {D3DTOP_SELECTARG1, kArg1, -1},
    {D3DTOP_SELECTARG2, kArg2, -1},
    {D3DTOP_MODULATE, kBoth, -1},
    {D3DTOP_MODULATE2X, kBoth, -1},
    {D3DTOP_MODULATE4X, kBoth, -1},
    {D3DTOP_ADD, kBoth, -1},
    {D3DTOP_ADDSIGNED, kBoth, -1},
    {D3DTOP_ADDSIGNED2X, kBoth, -1},
    {D3DTOP_SUBTRACT, kBoth, -1},
    {D3DTOP_ADDSMOOTH, kBoth, -1},
    {D3DTOP_BLENDDIFFUSEALPHA, kBoth, D3DTA_DIFFUSE},
    {D3DTOP_BLENDTEXTUREALPHA, kBoth, D3DTA_TEXTURE},
    {D3DTOP_BLENDFACTORALPHA, kBoth, D3DTA_TFACTOR},
    {D3DTOP_BLENDTEXTUREALPHAPM, kBoth, D3DTA_TEXTURE},
    {D3DTOP_BLENDCURRENTALPHA, kBoth, D3DTA_CURRENT},
    {D3DTOP_PREMODULATE, kArg1, -1},
    {D3DTOP_MODULATEALPHA_ADDCOLOR, kBoth, -1},
    {D3DTOP_MODULATECOLOR_ADDALPHA, kBoth, -1},
    {D3DTOP_MODULATEINVALPHA_ADDCOLOR, kBoth, -1},
    {D3DTOP_MODULATEINVCOLOR_ADDALPHA, kBoth, -1},
    {D3DTOP_BUMPENVMAP, 0, -1},
    {D3DTOP_BUMPENVMAPLUMINANCE, 0, -1},
    {D3DTOP_DOTPRODUCT3, kBoth, -1},
    {D3DTOP_MULTIPLYADD, kAll, -1},
    {D3DTOP_LERP, kAll, -1},
};

} // namespace

const OperationRow* FindOperation(DWORD operation)
{
    for (const OperationRow& row : kStageOperations)
        if (row.operation == operation)
            return &row;
    return nullptr;
}

} // namespace headless
