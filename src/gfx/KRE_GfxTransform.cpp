#include "gfx/KRE_Gfx.h"

#include "gfx/DirectXErrorName.h"

void KRE_Gfx::SetTransform(D3DTRANSFORMSTATETYPE type, const D3DMATRIX& matrix)
{
    Check(device->SetTransform(type, &matrix), "SetTransform failed: %s");
}

void KRE_Gfx::SetProjectionMatrix(const D3DMATRIX& matrix)
{
    projection = matrix;
    const float m34 = projection._34;
    if (m34 != 1.0f && m34 != 0.0f) {
        const float scale = 1.0f / m34;
        for (auto& row : projection.m) {
            for (float& element : row)
                element *= scale;
        }
    }
    SetTransform(D3DTS_PROJECTION, projection);
}

void KRE_Gfx::SetViewMatrix(const D3DMATRIX& matrix)
{
    view = matrix;
    matricesChanged = 1;
    SetTransform(D3DTS_VIEW, view);
}

void KRE_Gfx::SetWorldMatrix(const D3DMATRIX& matrix, int32_t index)
{
    if (index < 0 || index >= kWorldMatrices)
        return;
    world[index] = matrix;
    SetTransform(D3DTS_WORLDMATRIX(index), world[index]);
}

void KRE_Gfx::UpdateWorldViewProj()
{
    D3DXMATRIX worldView;
    D3DXMatrixMultiply(&worldView, &world[0], &view);
    D3DXMatrixMultiply(&worldViewProj, &worldView, &projection);
}

void KRE_Gfx::SetProjection(float newNear, float newFar, float fieldOfView, float aspect)
{
    if (aspect == -1.0f)
        aspect =
            static_cast<float>(viewport.Width) * aspectFactor / static_cast<float>(viewport.Height);
    D3DXMATRIX matrix;
    D3DXMatrixPerspectiveFovLH(&matrix, fieldOfView, aspect, newNear, newFar);
    SetProjectionMatrix(matrix);
    nearZ = newNear;
    farZ = newFar;
}

void KRE_Gfx::MirrorScene()
{
    D3DXMATRIX mirrored = projection;
    for (auto& row : mirrored.m)
        row[0] = 0.0f - row[0]; // right-multiplies by a scaling of x by -1; never gives -0
    SetProjectionMatrix(mirrored);
    SetCullMode(-cullMode);
}

void KRE_Gfx::GetViewPosition(D3DXVECTOR3& positionOut)
{
    D3DXMATRIX inverse;
    if (!D3DXMatrixInverse(&inverse, nullptr, &view))
        D3DXMatrixIdentity(&inverse);
    positionOut = D3DXVECTOR3(inverse._41, inverse._42, inverse._43);
}

void KRE_Gfx::SetTextureTransform(const D3DMATRIX* matrix, int32_t stage)
{
    if (stage < 0 || stage >= kStages)
        Error("Invalid texture stage in SetTextureTransform()");
    if (!matrix) {
        D3DXMatrixIdentity(&textureMatrix[stage]);
        SetTextureTransformFlags(stage, D3DTTFF_DISABLE);
        return;
    }
    textureMatrix[stage] = *matrix;
    SetTextureTransformFlags(stage, D3DTTFF_COUNT3);
    SetTransform(static_cast<D3DTRANSFORMSTATETYPE>(D3DTS_TEXTURE0 + stage), textureMatrix[stage]);
}

void KRE_Gfx::SetViewport(DWORD x1, DWORD y1, DWORD x2, DWORD y2, float minZ, float maxZ)
{
    viewport = {x1, y1, x2 - x1, y2 - y1, minZ, maxZ};
    viewportChanged = 1;
    lastResult = device->SetViewport(&viewport);
    if (SUCCEEDED(lastResult))
        return;
    if (windowed)
        Warning("SetViewPort failed: %s", DirectXErrorName(lastResult));
    else
        Error("SetViewPort failed: %s", DirectXErrorName(lastResult));
}
