#include "qsa/QSA_VertexFormat.h"

#include "qsa/QSA_Material.h"
#include "qsa/QSA_MeshBuilder.h"

DWORD ChooseVertexFormat(const QSA_VertexNeeds& needs, ErrorClass& report)
{
    static constexpr DWORD kBlended = D3DFVF_NORMAL | D3DFVF_LASTBETA_UBYTE4;
    static constexpr DWORD kFormats[] = {D3DFVF_XYZ | D3DFVF_NORMAL, D3DFVF_XYZB2 | kBlended,
                                         D3DFVF_XYZB2 | kBlended, D3DFVF_XYZB3 | kBlended,
                                         D3DFVF_XYZB4 | kBlended};
    if (needs.weightCount < 0 || needs.weightCount > kMaxVertexWeights)
        report.Error("Invalid number of weightings: %i", needs.weightCount);
    DWORD fvf = kFormats[needs.weightCount];
    if (needs.hasColors)
        fvf |= D3DFVF_DIFFUSE | D3DFVF_SPECULAR;

    int32_t sets = 0;
    if (const QSA_Material* material = needs.material) {
        sets += material->hasDiffuse ? 1 : 0;
        if (material->hasBump) {
            fvf |= D3DFVF_TEXCOORDSIZE3(1);
            ++sets;
        }
        sets += material->hasReflect ? 1 : 0;
    }
    // QUIRK: three sets add no count at all, so meshes of materials with all three maps are drawn
    // without their maps. Kept because converted files are compared.
    if (sets == 1 || (sets == 0 && needs.hasTextureFaces))
        fvf |= D3DFVF_TEX1;
    else if (sets == 2)
        fvf |= D3DFVF_TEX2;
    return fvf;
}
