#include "gfx/KRE_Gfx.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr float kDefaultNear = 1.0f;
constexpr float kDefaultFar = 10000.0f;
constexpr float kDefaultFieldOfView = 0.7854f; // radians, an eighth of a turn
constexpr float kAspectOfViewport = -1.0f;
constexpr D3DCOLOR kWhite = 0xFFFFFFFF;

constexpr KRE_VertexPosTex kScreenCorners[] = {
    {-1.0f, 1.0f, 0.0f, 0.0f, 0.0f},
    {-1.0f, -1.0f, 0.0f, 0.0f, 1.0f},
    {1.0f, -1.0f, 0.0f, 1.0f, 1.0f},
    {1.0f, 1.0f, 0.0f, 1.0f, 0.0f},
};
constexpr KRE_LVertex kQuadCorners[] = {
    {-1.0f, -1.0f, 0.0f, kWhite, kNoSpecular, 0.0f, 0.0f},
    {-1.0f, 1.0f, 0.0f, kWhite, kNoSpecular, 0.0f, 1.0f},
    {1.0f, 1.0f, 0.0f, kWhite, kNoSpecular, 1.0f, 1.0f},
    {1.0f, -1.0f, 0.0f, kWhite, kNoSpecular, 1.0f, 0.0f},
};

/// Writes all vertices of a list from an array of the same length.
template <class Vertex, size_t kCount>
void FillList(KRE_VertexListTemp<Vertex>& list, const Vertex (&vertices)[kCount])
{
    std::copy_n(vertices, kCount, list.LockVertices(0, kCount, 0));
    list.Unlock();
}

/// Writes one vertex to every element of a list.
template <class Vertex>
void RepeatInList(KRE_VertexListTemp<Vertex>& list, const Vertex& vertex)
{
    std::fill_n(list.LockVertices(0, list.vertexCount, 0), list.vertexCount, vertex);
    list.Unlock();
}

} // namespace

void KRE_Gfx::SetDeviceDefaults()
{
    ResetStateCache();
    SetFillMode(D3DFILL_SOLID, nullptr);
    SetZEnable(zBits > 0 ? D3DZB_TRUE : D3DZB_FALSE);
    // The device replaces a size of 0; if it does not, use the client area's size.
    if (presentParams.BackBufferWidth == 0 || presentParams.BackBufferHeight == 0) {
        presentParams.BackBufferWidth = static_cast<UINT>(clientRect.right - clientRect.left);
        presentParams.BackBufferHeight = static_cast<UINT>(clientRect.bottom - clientRect.top);
    }
    SetViewport(0, 0, presentParams.BackBufferWidth, presentParams.BackBufferHeight, 0.0f, 1.0f);
    SetProjection(kDefaultNear, kDefaultFar, kDefaultFieldOfView, kAspectOfViewport);
    AcquireTargetSurfaces();
    SetLighting(1, nullptr);
    SetSpecular(0);
    SetBlendMode(kBlendNone, blendValue, 0);
    SetMipmapMode(D3DTEXF_NONE, 0.0f, 0);
    SetRenderState(D3DRS_DITHERENABLE, DWORD{1});
    SetTextureAddress(D3DTADDRESS_WRAP, 0);
    SetRenderSource(kSourceTexture, 0, kWhite);
}

void KRE_Gfx::FixedFunctionDefaults()
{
    SetNormalizeNormals(1);
    SetSoftwareVertexProcessing(0);
    for (int32_t stage = 0; stage < 2; ++stage) {
        SetTextureFilter(kMagnifyLinear, stage);
        SetTextureFilter(kMinifyLinear, stage);
    }
}

void KRE_Gfx::RestoreRenderStates()
{
    SetViewport(viewport.X, viewport.Y, viewport.X + viewport.Width, viewport.Y + viewport.Height,
                viewport.MinZ, viewport.MaxZ);
    SetProjection(nearZ, farZ, kDefaultFieldOfView, kAspectOfViewport);
    SetViewMatrix(view);
    SetLighting(lighting, &unlitColor);
    SetSpecular(specular);
    SetBlendMode(blendMode, blendValue, 0);
    SetCullMode(cullMode);
    SetFog(fog);
    SetFogEnable(fogEnable);
    SetClipping(clipping);
    SetAlphaTest(alphaTest, alphaReference);
    SetPatchEdgeStyle(patchEdgeStyle);
    SetMipmapMode(mipmapMode[0], lodBias[0], 0);
    SetFillMode(fillMode, nullptr);
    SetZWrite(zWrite);
    SetTextureAddressU(addressU[0], 0);
    SetTextureAddressV(addressV[0], 0);
    SetGammaRamp(&gammaRamp, gammaCalibrate);
    FixedFunctionDefaults();
}

void KRE_Gfx::BuildVertexLists()
{
    CreateVertexList(&pointList, 1, -1, 1);
    pointList.SetPrimitiveType(D3DPT_POINTLIST);
    pointList.points = KRE_PointRecord();
    CreateVertexList(&lineList, 2, -1, 1);
    lineList.SetPrimitiveType(D3DPT_LINELIST);

    CreateVertexList(&posTexList, std::size(kScreenCorners), -1, 1);
    posTexList.SetPrimitiveType(D3DPT_TRIANGLEFAN);
    FillList(posTexList, kScreenCorners);

    CreateVertexList(&tlList, quadBatchVertices, -1, 1);
    RepeatInList(tlList, {0.0f, 0.0f, 1.0f, 1.0f, 0, kNoSpecular, 0.0f, 0.0f});
    CreateVertexList(&lList, quadBatchVertices, -1, 1);
    RepeatInList(lList, {0.0f, 0.0f, 0.0f, 0, kNoSpecular, 0.0f, 0.0f});
    CreateVertexList(&lQuadList, std::size(kQuadCorners), -1, 0);
    FillList(lQuadList, kQuadCorners);
}
