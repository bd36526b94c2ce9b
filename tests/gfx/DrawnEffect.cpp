#include "tests/gfx/DrawnEffect.h"

#include "tests/support/TestDevice.h"

DrawnEffect::DrawnEffect() : EngineTest(RecordingDirect3D::WrapReal())
{
    Start();
    gfx.CreateVertexList(&list, 3, 0, false);
    auto* vertices = static_cast<KRE_PointVertex*>(list.Lock(0, 3, 0));
    vertices[0] = {-2, 2, 1, 0xFFFFFFFF};
    vertices[1] = {6, 2, 1, 0xFFFFFFFF};
    vertices[2] = {-2, -6, 1, 0xFFFFFFFF};
    list.Unlock();
    D3DXMATRIX matrix;
    D3DXMatrixIdentity(&matrix);
    gfx.SetViewMatrix(matrix);
    gfx.SetProjectionMatrix(*D3DXMatrixScaling(&matrix, 0.5f, 0.5f, 0.5f));
    gfx.SetLighting(0, nullptr);
    gfx.SetTexture(nullptr);
}

std::vector<D3DCOLOR> DrawnEffect::Drawn()
{
    gfx.BeginScene();
    gfx.Clear(0xFF000000);
    gfx.DrawTriangleList(list, nullptr, -1);
    gfx.EndScene();
    return ReadRenderTarget(gfx.device.Get(), gfx.renderTarget.Get());
}

D3DCOLOR DrawnEffect::At(const std::vector<D3DCOLOR>& frame, float x, float y)
{
    const auto column = static_cast<size_t>((x + 2) / 4 * 64);
    const auto row = static_cast<size_t>((2 - y) / 4 * 48);
    return frame.at(row * 64 + column) & 0xFFFFFF;
}
