// draw_cost ROW DRAWS   draws a row of bench/DrawScene.h so many times. tools/bench-draw measures it from outside,
// on both hosts.

#include "bench/DrawScene.h"

#include <cstring>

using namespace draw_bench;

namespace {

/// A rasterizer may put draws off until somebody looks: copies the picture to where it can be read.
void Finish(IDirect3DDevice9* device)
{
    IDirect3DSurface9 *target = nullptr, *copy = nullptr;
    Check(device->GetRenderTarget(0, &target), "GetRenderTarget");
    Check(device->CreateOffscreenPlainSurface(kWidth, kHeight, D3DFMT_X8R8G8B8, D3DPOOL_SYSTEMMEM,
                                              &copy, nullptr),
          "CreateOffscreenPlainSurface");
    Check(device->GetRenderTargetData(target, copy), "GetRenderTargetData");
    D3DLOCKED_RECT locked;
    Check(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY), "LockRect");
    copy->UnlockRect();
    copy->Release();
    target->Release();
}

void Draw(const Row& row, int draws)
{
    Scene scene;
    row.setUp(scene.Device());
    for (int i = 0; i < draws; ++i)
        scene.Draw();
    Finish(scene.Device());
}

} // namespace

int main(int count, char** arguments)
{
    for (const Row& row : kRows)
        if (count == 3 && std::strcmp(arguments[1], row.name) == 0) {
            Draw(row, std::atoi(arguments[2]));
            return 0;
        }
    return 1;
}
