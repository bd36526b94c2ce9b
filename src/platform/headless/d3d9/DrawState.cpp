#include "platform/headless/d3d9/DrawState.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

struct StateDefault {
    int state;
    DWORD value;
};

constexpr DWORD Bits(float value)
{
    return std::bit_cast<DWORD>(value);
}

/// Every render state with its published default. That of `D3DRS_ZENABLE` depends on whether there
/// is a depth buffer.
constexpr StateDefault kRenderDefaults[] = {
    {D3DRS_ZENABLE, D3DZB_FALSE},
    {D3DRS_FILLMODE, D3DFILL_SOLID},
    {D3DRS_SHADEMODE, D3DSHADE_GOURAUD},
    {D3DRS_ZWRITEENABLE, TRUE},
    {D3DRS_ALPHATESTENABLE, FALSE},
    {D3DRS_LASTPIXEL, TRUE},
    {D3DRS_SRCBLEND, D3DBLEND_ONE},
    {D3DRS_DESTBLEND, D3DBLEND_ZERO},
    {D3DRS_CULLMODE, D3DCULL_CCW},
    {D3DRS_ZFUNC, D3DCMP_LESSEQUAL},
    {D3DRS_ALPHAREF, 0},
    {D3DRS_ALPHAFUNC, D3DCMP_ALWAYS},
    {D3DRS_DITHERENABLE, FALSE},
    {D3DRS_ALPHABLENDENABLE, FALSE},
    {D3DRS_FOGENABLE, FALSE},
    {D3DRS_SPECULARENABLE, FALSE},
    {D3DRS_FOGCOLOR, 0},
    {D3DRS_FOGTABLEMODE, D3DFOG_NONE},
    {D3DRS_FOGSTART, Bits(0.0f)},
    {D3DRS_FOGEND, Bits(1.0f)},
    {D3DRS_FOGDENSITY, Bits(1.0f)},
    {D3DRS_RANGEFOGENABLE, FALSE},
    {D3DRS_STENCILENABLE, FALSE},
    {D3DRS_STENCILFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_STENCILZFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_STENCILPASS, D3DSTENCILOP_KEEP},
    {D3DRS_STENCILFUNC, D3DCMP_ALWAYS},
    {D3DRS_STENCILREF, 0},
    {D3DRS_STENCILMASK, 0xFFFFFFFF},
    {D3DRS_STENCILWRITEMASK, 0xFFFFFFFF},
    {D3DRS_TEXTUREFACTOR, 0xFFFFFFFF},
    {D3DRS_WRAP0, 0},
    {D3DRS_WRAP1, 0},
    {D3DRS_WRAP2, 0},
    {D3DRS_WRAP3, 0},
    {D3DRS_WRAP4, 0},
    {D3DRS_WRAP5, 0},
    {D3DRS_WRAP6, 0},
    {D3DRS_WRAP7, 0},
    {D3DRS_CLIPPING, TRUE},
    {D3DRS_LIGHTING, TRUE},
    {D3DRS_AMBIENT, 0},
    {D3DRS_FOGVERTEXMODE, D3DFOG_NONE},
    {D3DRS_COLORVERTEX, TRUE},
    {D3DRS_LOCALVIEWER, TRUE},
    {D3DRS_NORMALIZENORMALS, FALSE},
    {D3DRS_DIFFUSEMATERIALSOURCE, D3DMCS_COLOR1},
    {D3DRS_SPECULARMATERIALSOURCE, D3DMCS_COLOR2},
    {D3DRS_AMBIENTMATERIALSOURCE, D3DMCS_MATERIAL},
    {D3DRS_EMISSIVEMATERIALSOURCE, D3DMCS_MATERIAL},
    {D3DRS_VERTEXBLEND, D3DVBF_DISABLE},
    {D3DRS_CLIPPLANEENABLE, 0},
    {D3DRS_POINTSIZE, Bits(1.0f)},
    {D3DRS_POINTSIZE_MIN, Bits(1.0f)},
    {D3DRS_POINTSPRITEENABLE, FALSE},
    {D3DRS_POINTSCALEENABLE, FALSE},
    {D3DRS_POINTSCALE_A, Bits(1.0f)},
    {D3DRS_POINTSCALE_B, Bits(0.0f)},
    {D3DRS_POINTSCALE_C, Bits(0.0f)},
    {D3DRS_MULTISAMPLEANTIALIAS, TRUE},
    {D3DRS_MULTISAMPLEMASK, 0xFFFFFFFF},
    {D3DRS_PATCHEDGESTYLE, D3DPATCHEDGE_DISCRETE},
    {D3DRS_DEBUGMONITORTOKEN, D3DDMT_ENABLE},
    {D3DRS_POINTSIZE_MAX, Bits(64.0f)},
    {D3DRS_INDEXEDVERTEXBLENDENABLE, FALSE},
    {D3DRS_COLORWRITEENABLE, 0xF},
    {D3DRS_TWEENFACTOR, Bits(0.0f)},
    {D3DRS_BLENDOP, D3DBLENDOP_ADD},
    {D3DRS_POSITIONDEGREE, D3DDEGREE_CUBIC},
    {D3DRS_NORMALDEGREE, D3DDEGREE_LINEAR},
    {D3DRS_SCISSORTESTENABLE, FALSE},
    {D3DRS_SLOPESCALEDEPTHBIAS, Bits(0.0f)},
    {D3DRS_ANTIALIASEDLINEENABLE, FALSE},
    {D3DRS_MINTESSELLATIONLEVEL, Bits(1.0f)},
    {D3DRS_MAXTESSELLATIONLEVEL, Bits(1.0f)},
    {D3DRS_ADAPTIVETESS_X, Bits(0.0f)},
    {D3DRS_ADAPTIVETESS_Y, Bits(0.0f)},
    {D3DRS_ADAPTIVETESS_Z, Bits(1.0f)},
    {D3DRS_ADAPTIVETESS_W, Bits(0.0f)},
    {D3DRS_ENABLEADAPTIVETESSELLATION, FALSE},
    {D3DRS_TWOSIDEDSTENCILMODE, FALSE},
    {D3DRS_CCW_STENCILFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_CCW_STENCILZFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_CCW_STENCILPASS, D3DSTENCILOP_KEEP},
    {D3DRS_CCW_STENCILFUNC, D3DCMP_ALWAYS},
    {D3DRS_COLORWRITEENABLE1, 0xF},
    {D3DRS_COLORWRITEENABLE2, 0xF},
    {D3DRS_COLORWRITEENABLE3, 0xF},
    {D3DRS_BLENDFACTOR, 0xFFFFFFFF},
    {D3DRS_SRGBWRITEENABLE, FALSE},
    {D3DRS_DEPTHBIAS, Bits(0.0f)},
    {D3DRS_WRAP8, 0},
    {D3DRS_WRAP9, 0},
    {D3DRS_WRAP10, 0},
    {D3DRS_WRAP11, 0},
    {D3DRS_WRAP12, 0},
    {D3DRS_WRAP13, 0},
    {D3DRS_WRAP14, 0},
    {D3DRS_WRAP15, 0},
    {D3DRS_SEPARATEALPHABLENDENABLE, FALSE},
    {D3DRS_SRCBLENDALPHA, D3DBLEND_ONE},
    {D3DRS_DESTBLENDALPHA, D3DBLEND_ZERO},
    {D3DRS_BLENDOPALPHA, D3DBLENDOP_ADD},
};

constexpr StateDefault kStageDefaults[] = {
    {D3DTSS_COLOROP, D3DTOP_DISABLE},    {D3DTSS_COLORARG1, D3DTA_TEXTURE},
    {D3DTSS_COLORARG2, D3DTA_CURRENT},   {D3DTSS_ALPHAOP, D3DTOP_DISABLE},
    {D3DTSS_ALPHAARG1, D3DTA_TEXTURE},   {D3DTSS_ALPHAARG2, D3DTA_CURRENT},
    {D3DTSS_BUMPENVMAT00, Bits(0.0f)},   {D3DTSS_BUMPENVMAT01, Bits(0.0f)},
    {D3DTSS_BUMPENVMAT10, Bits(0.0f)},   {D3DTSS_BUMPENVMAT11, Bits(0.0f)},
    {D3DTSS_TEXCOORDINDEX, 0},           {D3DTSS_BUMPENVLSCALE, Bits(0.0f)},
    {D3DTSS_BUMPENVLOFFSET, Bits(0.0f)}, {D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_DISABLE},
    {D3DTSS_COLORARG0, D3DTA_CURRENT},   {D3DTSS_ALPHAARG0, D3DTA_CURRENT},
    {D3DTSS_RESULTARG, D3DTA_CURRENT},   {D3DTSS_CONSTANT, 0},
};

constexpr StateDefault kSamplerDefaults[] = {
    {D3DSAMP_ADDRESSU, D3DTADDRESS_WRAP},
    {D3DSAMP_ADDRESSV, D3DTADDRESS_WRAP},
    {D3DSAMP_ADDRESSW, D3DTADDRESS_WRAP},
    {D3DSAMP_BORDERCOLOR, 0},
    {D3DSAMP_MAGFILTER, D3DTEXF_POINT},
    {D3DSAMP_MINFILTER, D3DTEXF_POINT},
    {D3DSAMP_MIPFILTER, D3DTEXF_NONE},
    {D3DSAMP_MIPMAPLODBIAS, Bits(0.0f)},
    {D3DSAMP_MAXMIPLEVEL, 0},
    {D3DSAMP_MAXANISOTROPY, 1},
    {D3DSAMP_SRGBTEXTURE, 0},
    {D3DSAMP_ELEMENTINDEX, 0},
    {D3DSAMP_DMAPOFFSET, 0},
};

template <size_t Count>
bool Names(const StateDefault (&rows)[Count], int state)
{
    for (const StateDefault& row : rows)
        if (row.state == state)
            return true;
    return false;
}

template <size_t Count, typename Values>
void Fill(const StateDefault (&rows)[Count], Values& valuesOut)
{
    for (const StateDefault& row : rows)
        valuesOut[static_cast<size_t>(row.state)] = row.value;
}

void SetStageDefaults(DrawState& state)
{
    for (UINT i = 0; i < kStageCount; ++i) {
        Fill(kStageDefaults, state.stage[i]);
        state.stage[i][D3DTSS_TEXCOORDINDEX] = i;
    }
    state.stage[0][D3DTSS_COLOROP] = D3DTOP_MODULATE;
    state.stage[0][D3DTSS_ALPHAOP] = D3DTOP_SELECTARG1;
    for (auto& sampler : state.sampler)
        Fill(kSamplerDefaults, sampler);
}

} // namespace

float DrawState::RenderFloat(D3DRENDERSTATETYPE state) const
{
    return std::bit_cast<float>(render[state]);
}

template <typename T>
HRESULT ConstantRegisters<T>::Set(UINT first, const T* data, UINT number)
{
    if (!data || !Has(first, number))
        return D3DERR_INVALIDCALL;
    if (values.empty())
        values.resize(size_t{count} * width);
    std::copy_n(data, size_t{number} * width, values.begin() + first * width);
    return D3D_OK;
}

template <typename T>
HRESULT ConstantRegisters<T>::Get(UINT first, T* dataOut, UINT number) const
{
    if (!dataOut || !Has(first, number))
        return D3DERR_INVALIDCALL;
    const size_t from = size_t{first} * width, length = size_t{number} * width;
    if (values.empty())
        std::fill_n(dataOut, length, T{});
    else
        std::copy_n(&values[from], length, dataOut);
    return D3D_OK;
}

template class ConstantRegisters<float>;
template class ConstantRegisters<int>;

void ShaderConstants::Clear()
{
    floats.Clear();
    ints.Clear();
    bools.Clear();
}

void SetDrawDefaults(DrawState& state, bool hasDepth)
{
    Fill(kRenderDefaults, state.render);
    state.render[D3DRS_ZENABLE] = hasDepth ? D3DZB_TRUE : D3DZB_FALSE;
    SetStageDefaults(state);
    state.view = state.projection = IdentityMatrix();
    state.world.fill(IdentityMatrix());
    state.texture.fill(IdentityMatrix());
    state.material = {};
    state.lights.clear();
    state.clipPlanes = {};
    state.pictures = {};
    state.target = state.depth = nullptr;
    state.vertexProgram = state.pixelProgram = nullptr;
    state.vertexConstants.Clear();
    state.pixelConstants.Clear();
}

UINT SamplerSlot(DWORD sampler)
{
    if (sampler >= D3DVERTEXTEXTURESAMPLER0 && sampler <= D3DVERTEXTEXTURESAMPLER3)
        return kPixelSamplerCount + sampler - D3DVERTEXTEXTURESAMPLER0;
    return sampler < kPixelSamplerCount ? sampler : kSamplerCount;
}

D3DMATRIX* FindTransform(DrawState& state, D3DTRANSFORMSTATETYPE type)
{
    if (type == D3DTS_VIEW)
        return &state.view;
    if (type == D3DTS_PROJECTION)
        return &state.projection;
    if (type >= D3DTS_TEXTURE0 && type <= D3DTS_TEXTURE7)
        return &state.texture[static_cast<size_t>(type - D3DTS_TEXTURE0)];
    const int world = type - D3DTS_WORLD;
    if (world >= 0 && world < static_cast<int>(kWorldMatrixCount))
        return &state.world[static_cast<size_t>(world)];
    return nullptr;
}

bool IsRenderState(D3DRENDERSTATETYPE state)
{
    return Names(kRenderDefaults, state);
}

bool IsStageState(D3DTEXTURESTAGESTATETYPE type)
{
    return Names(kStageDefaults, type);
}

bool IsSamplerState(D3DSAMPLERSTATETYPE type)
{
    return Names(kSamplerDefaults, type);
}

D3DMATRIX IdentityMatrix()
{
    D3DMATRIX matrix = {};
    for (int i = 0; i < 4; ++i)
        matrix.m[i][i] = 1.0f;
    return matrix;
}

D3DMATRIX MultiplyMatrices(const D3DMATRIX& a, const D3DMATRIX& b)
{
    D3DMATRIX product;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            product.m[row][column] = a.m[row][0] * b.m[0][column] + a.m[row][1] * b.m[1][column] +
                                     a.m[row][2] * b.m[2][column] + a.m[row][3] * b.m[3][column];
    return product;
}

} // namespace headless
