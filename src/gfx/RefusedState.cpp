#include "gfx/RefusedState.h"

#include <vector>

#include "platform/ComPointer.h"

namespace {

/// A state with a fixed set of values, so it may hold one that a device does not know, with the
/// documented value of a new device. States that take any number, such as colours, distances or bit
/// masks, are never refused. Switches come after the states that they enable, so that they are not
/// blamed in their place.
struct NamedState {
    DWORD state;
    const char* name;
    DWORD start;
};

#define NAMED(state, start)                                                                        \
    {                                                                                              \
        state, #state, start                                                                       \
    }

constexpr NamedState kRenderStates[] = {
    NAMED(D3DRS_FILLMODE, D3DFILL_SOLID),
    NAMED(D3DRS_SHADEMODE, D3DSHADE_GOURAUD),
    NAMED(D3DRS_SRCBLEND, D3DBLEND_ONE),
    NAMED(D3DRS_DESTBLEND, D3DBLEND_ZERO),
    NAMED(D3DRS_CULLMODE, D3DCULL_CCW),
    NAMED(D3DRS_ZFUNC, D3DCMP_LESSEQUAL),
    NAMED(D3DRS_ALPHAFUNC, D3DCMP_ALWAYS),
    NAMED(D3DRS_FOGTABLEMODE, D3DFOG_NONE),
    NAMED(D3DRS_STENCILFAIL, D3DSTENCILOP_KEEP),
    NAMED(D3DRS_STENCILZFAIL, D3DSTENCILOP_KEEP),
    NAMED(D3DRS_STENCILPASS, D3DSTENCILOP_KEEP),
    NAMED(D3DRS_STENCILFUNC, D3DCMP_ALWAYS),
    NAMED(D3DRS_WRAP0, 0),
    NAMED(D3DRS_WRAP1, 0),
    NAMED(D3DRS_WRAP2, 0),
    NAMED(D3DRS_WRAP3, 0),
    NAMED(D3DRS_WRAP4, 0),
    NAMED(D3DRS_WRAP5, 0),
    NAMED(D3DRS_WRAP6, 0),
    NAMED(D3DRS_WRAP7, 0),
    NAMED(D3DRS_FOGVERTEXMODE, D3DFOG_NONE),
    NAMED(D3DRS_DIFFUSEMATERIALSOURCE, D3DMCS_COLOR1),
    NAMED(D3DRS_SPECULARMATERIALSOURCE, D3DMCS_COLOR2),
    NAMED(D3DRS_AMBIENTMATERIALSOURCE, D3DMCS_MATERIAL),
    NAMED(D3DRS_EMISSIVEMATERIALSOURCE, D3DMCS_MATERIAL),
    NAMED(D3DRS_VERTEXBLEND, D3DVBF_DISABLE),
    NAMED(D3DRS_PATCHEDGESTYLE, D3DPATCHEDGE_DISCRETE),
    NAMED(D3DRS_COLORWRITEENABLE, 0xF),
    NAMED(D3DRS_BLENDOP, D3DBLENDOP_ADD),
    NAMED(D3DRS_POSITIONDEGREE, D3DDEGREE_CUBIC),
    NAMED(D3DRS_NORMALDEGREE, D3DDEGREE_LINEAR),
    NAMED(D3DRS_CCW_STENCILFAIL, D3DSTENCILOP_KEEP),
    NAMED(D3DRS_CCW_STENCILZFAIL, D3DSTENCILOP_KEEP),
    NAMED(D3DRS_CCW_STENCILPASS, D3DSTENCILOP_KEEP),
    NAMED(D3DRS_CCW_STENCILFUNC, D3DCMP_ALWAYS),
    NAMED(D3DRS_WRAP8, 0),
    NAMED(D3DRS_WRAP9, 0),
    NAMED(D3DRS_WRAP10, 0),
    NAMED(D3DRS_WRAP11, 0),
    NAMED(D3DRS_WRAP12, 0),
    NAMED(D3DRS_WRAP13, 0),
    NAMED(D3DRS_WRAP14, 0),
    NAMED(D3DRS_WRAP15, 0),
    NAMED(D3DRS_SRCBLENDALPHA, D3DBLEND_ONE),
    NAMED(D3DRS_DESTBLENDALPHA, D3DBLEND_ZERO),
    NAMED(D3DRS_BLENDOPALPHA, D3DBLENDOP_ADD),
    NAMED(D3DRS_ZENABLE, D3DZB_FALSE),
    NAMED(D3DRS_ZWRITEENABLE, TRUE),
    NAMED(D3DRS_ALPHATESTENABLE, FALSE),
    NAMED(D3DRS_LASTPIXEL, TRUE),
    NAMED(D3DRS_DITHERENABLE, FALSE),
    NAMED(D3DRS_ALPHABLENDENABLE, FALSE),
    NAMED(D3DRS_FOGENABLE, FALSE),
    NAMED(D3DRS_SPECULARENABLE, FALSE),
    NAMED(D3DRS_RANGEFOGENABLE, FALSE),
    NAMED(D3DRS_STENCILENABLE, FALSE),
    NAMED(D3DRS_CLIPPING, TRUE),
    NAMED(D3DRS_LIGHTING, TRUE),
    NAMED(D3DRS_COLORVERTEX, TRUE),
    NAMED(D3DRS_LOCALVIEWER, TRUE),
    NAMED(D3DRS_NORMALIZENORMALS, FALSE),
    NAMED(D3DRS_POINTSPRITEENABLE, FALSE),
    NAMED(D3DRS_POINTSCALEENABLE, FALSE),
    NAMED(D3DRS_MULTISAMPLEANTIALIAS, TRUE),
    NAMED(D3DRS_INDEXEDVERTEXBLENDENABLE, FALSE),
    NAMED(D3DRS_SCISSORTESTENABLE, FALSE),
    NAMED(D3DRS_ANTIALIASEDLINEENABLE, FALSE),
    NAMED(D3DRS_ENABLEADAPTIVETESSELLATION, FALSE),
    NAMED(D3DRS_TWOSIDEDSTENCILMODE, FALSE),
    NAMED(D3DRS_SRGBWRITEENABLE, FALSE),
    NAMED(D3DRS_SEPARATEALPHABLENDENABLE, FALSE),
};

constexpr NamedState kStageStates[] = {
    NAMED(D3DTSS_COLORARG1, D3DTA_TEXTURE), NAMED(D3DTSS_COLORARG2, D3DTA_CURRENT),
    NAMED(D3DTSS_ALPHAARG1, D3DTA_TEXTURE), NAMED(D3DTSS_ALPHAARG2, D3DTA_CURRENT),
    NAMED(D3DTSS_TEXCOORDINDEX, 0),         NAMED(D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_DISABLE),
    NAMED(D3DTSS_COLORARG0, D3DTA_CURRENT), NAMED(D3DTSS_ALPHAARG0, D3DTA_CURRENT),
    NAMED(D3DTSS_RESULTARG, D3DTA_CURRENT), NAMED(D3DTSS_ALPHAOP, D3DTOP_DISABLE),
};

constexpr NamedState kSamplerStates[] = {
    NAMED(D3DSAMP_ADDRESSU, D3DTADDRESS_WRAP),
    NAMED(D3DSAMP_ADDRESSV, D3DTADDRESS_WRAP),
    NAMED(D3DSAMP_ADDRESSW, D3DTADDRESS_WRAP),
    NAMED(D3DSAMP_MAGFILTER, D3DTEXF_POINT),
    NAMED(D3DSAMP_MINFILTER, D3DTEXF_POINT),
    NAMED(D3DSAMP_MIPFILTER, D3DTEXF_NONE),
    NAMED(D3DSAMP_MAXANISOTROPY, 1),
    NAMED(D3DSAMP_SRGBTEXTURE, 0),
    NAMED(D3DSAMP_ELEMENTINDEX, 0),
};

constexpr NamedState kColorOp = NAMED(D3DTSS_COLOROP, D3DTOP_DISABLE);

#undef NAMED

constexpr DWORD kStages = 8;
constexpr DWORD kSamplers = 16;

enum class Kind { kRender, kSampler, kStage, kTexture, kFormat };

/// One state that may be reset, and its current value.
struct Suspect {
    Kind kind;
    const NamedState* row; ///< null for textures and the vertex format
    DWORD place;           ///< stage or sampler
    DWORD value = 0;
};

class Search {
public:
    Search(IDirect3DDevice9& deviceIn, DWORD formatIn) : device(deviceIn), format(formatIn)
    {
        for (const NamedState& row : kRenderStates)
            Add(Kind::kRender, &row, 0);
        for (const NamedState& row : kSamplerStates)
            AddPlaces(Kind::kSampler, &row, kSamplers);
        for (const NamedState& row : kStageStates)
            AddPlaces(Kind::kStage, &row, kStages);
        AddPlaces(Kind::kTexture, nullptr, kSamplers);
        AddPlaces(Kind::kStage, &kColorOp, kStages);
        Add(Kind::kFormat, nullptr, 0);
    }

    std::string Run(const std::function<HRESULT()>& draw)
    {
        if (SUCCEEDED(draw()))
            return "";
        for (const Suspect& suspect : suspects) {
            PutBack(suspect);
            if (SUCCEEDED(draw()))
                return TextOf(suspect);
        }
        return "";
    }

private:
    /// From the last place down, because switching a stage off also switches off all stages after
    /// it.
    void AddPlaces(Kind kind, const NamedState* row, DWORD count)
    {
        for (DWORD place = count; place-- > 0;)
            Add(kind, row, place);
    }

    /// A state that cannot be read, or has its initial value, is not a suspect.
    void Add(Kind kind, const NamedState* row, DWORD place)
    {
        Suspect suspect{kind, row, place};
        ComPointer<IDirect3DBaseTexture9> texture;
        HRESULT result = D3D_OK;
        if (kind == Kind::kRender)
            result =
                device.GetRenderState(static_cast<D3DRENDERSTATETYPE>(row->state), &suspect.value);
        else if (kind == Kind::kSampler)
            result = device.GetSamplerState(place, static_cast<D3DSAMPLERSTATETYPE>(row->state),
                                            &suspect.value);
        else if (kind == Kind::kStage)
            result = device.GetTextureStageState(
                place, static_cast<D3DTEXTURESTAGESTATETYPE>(row->state), &suspect.value);
        else if (kind == Kind::kTexture)
            result = device.GetTexture(place, texture.Out());
        else
            result = device.GetFVF(&suspect.value);
        const bool isChanged = row                      ? suspect.value != row->start
                               : kind == Kind::kTexture ? static_cast<bool>(texture)
                                                        : suspect.value != format;
        if (SUCCEEDED(result) && isChanged)
            suspects.push_back(suspect);
    }

    void PutBack(const Suspect& suspect)
    {
        const DWORD place = suspect.place;
        const DWORD value = suspect.row ? suspect.row->start : format;
        if (suspect.kind == Kind::kRender)
            device.SetRenderState(static_cast<D3DRENDERSTATETYPE>(suspect.row->state), value);
        else if (suspect.kind == Kind::kSampler)
            device.SetSamplerState(place, static_cast<D3DSAMPLERSTATETYPE>(suspect.row->state),
                                   value);
        else if (suspect.kind == Kind::kStage)
            device.SetTextureStageState(
                place, static_cast<D3DTEXTURESTAGESTATETYPE>(suspect.row->state), value);
        else if (suspect.kind == Kind::kTexture)
            device.SetTexture(place, nullptr);
        else
            device.SetFVF(value);
    }

    static std::string TextOf(const Suspect& suspect)
    {
        const std::string place = "[" + std::to_string(suspect.place) + "]";
        if (suspect.kind == Kind::kTexture)
            return "Texture" + place;
        const bool hasPlace = suspect.kind == Kind::kSampler || suspect.kind == Kind::kStage;
        const std::string name = suspect.row ? suspect.row->name : "FVF";
        return name + (hasPlace ? place : "") + " = " + std::to_string(suspect.value);
    }

    IDirect3DDevice9& device;
    DWORD format;
    std::vector<Suspect> suspects;
};

} // namespace

std::string FindRefusedState(IDirect3DDevice9& device, DWORD fvf,
                             const std::function<HRESULT()>& draw)
{
    return Search(device, fvf).Run(draw);
}
