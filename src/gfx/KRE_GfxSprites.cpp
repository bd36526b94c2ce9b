#include "gfx/KRE_Gfx.h"

#include <cmath>

#include "gfx/EffectPasses.h"

namespace {

constexpr float kCornerInset = 0.25f; // pixels, as for the texture rectangle
constexpr float kSideInset = 0.02f;
constexpr UINT kQuadPrimitives = 2;
constexpr int32_t kUnsetAddress = 0; // not a D3DTEXTUREADDRESS, so the next mode is sent

/// Rotates vectors clockwise on the screen, where y points down.
class Turn {
public:
    explicit Turn(float angleRadians)
        : cosine(static_cast<float>(std::cos(static_cast<double>(angleRadians)))),
          sine(static_cast<float>(std::sin(static_cast<double>(angleRadians))))
    {}

    D3DXVECTOR2 operator()(float x, float y) const
    {
        return {x * cosine - y * sine, x * sine + y * cosine};
    }

private:
    float cosine, sine;
};

void CheckCurrentTexture(KRE_Gfx& gfx)
{
    if (!gfx.currentTexture)
        gfx.Error("No texture set");
}

/// Writes everything but the texture coordinates, which `KRE_Texture::UpdateQuad` writes, in the
/// same vertex order.
void FillQuad(KRE_Gfx& gfx, const D3DXVECTOR2& corner, const D3DXVECTOR2& across,
              const D3DXVECTOR2& down, const D3DCOLOR (&colors)[4], float z)
{
    IDirect3DVertexBuffer9* const quad = gfx.currentTexture->quad.Get();
    void* bytes = nullptr;
    gfx.Check(quad ? quad->Lock(0, 0, &bytes, 0) : D3DERR_INVALIDCALL, " VB Lock failed: %s");
    auto* vertices = static_cast<KRE_TLVertex*>(bytes);
    const D3DXVECTOR2 corners[] = {corner + down, corner, corner + across + down, corner + across};
    for (size_t i = 0; i < std::size(corners); ++i) {
        // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): if the lock failed, Check has
        // thrown.
        KRE_TLVertex& vertex = vertices[i];
        vertex.x = corners[i].x;
        vertex.y = corners[i].y;
        vertex.z = z;
        vertex.rhw = 1.0f;
        vertex.diffuse = colors[i];
        vertex.specular = kNoSpecular;
    }
    gfx.lastResult = quad->Unlock();
}

} // namespace

void KRE_Gfx::DrawSprite(float x, float y, float angle, float scaleX, float scaleY, float hotX,
                         float hotY, D3DCOLOR color, float z)
{
    CheckCurrentTexture(*this);
    const Turn turn(angle);
    const D3DXVECTOR2 corner =
        D3DXVECTOR2(x - kCornerInset, y - kCornerInset) + turn(-hotX * scaleX, -hotY * scaleY);
    const D3DXVECTOR2 across = turn(currentTexture->sourceWidth * scaleX - kSideInset, 0.0f);
    const D3DXVECTOR2 down = turn(0.0f, currentTexture->sourceHeight * scaleY - kSideInset);
    FillQuad(*this, corner, across, down, {color, color, color, color}, z);
    DrawLastTexture();
}

void KRE_Gfx::DrawSpriteRect(float left, float top, float right, float bottom,
                             const D3DCOLOR (&colors)[4], float z)
{
    CheckCurrentTexture(*this);
    FillQuad(*this, {left - kCornerInset, top - kCornerInset}, {right - left - kSideInset, 0.0f},
             {0.0f, bottom - top - kSideInset}, colors, z);
    DrawLastTexture();
}

void KRE_Gfx::DrawLastTexture()
{
    CheckCurrentTexture(*this);
    SetSoftwareVertexProcessing(0);
    Check(device->SetStreamSource(0, currentTexture->quad.Get(), 0, sizeof(KRE_TLVertex)),
          " SetStreamSource in DrawLastTexture failed: %s");
    const int32_t cullBefore = cullMode;
    SetCullMode(0);
    if (!spriteUsesZ)
        DisableZ();
    SetTextureAddress(currentTexture->clampFlag ? D3DTADDRESS_WRAP : D3DTADDRESS_CLAMP, 0);
    SetFVF(KRE_TLVertex::kFvf);
    KRE_ShaderEffect* const effect = sceneEffect && sceneEffect->IsUsable() ? sceneEffect : nullptr;
    if (effect)
        PrepareEffect(*effect, nullptr, -1);
    DrawInPasses(
        *this, effect,
        [&] { return device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, kQuadPrimitives); },
        " DrawPrimitive in DrawLastTexture failed: %s");
    cache.samplerState[0][D3DSAMP_ADDRESSU] = kUnsetAddress;
    cache.samplerState[0][D3DSAMP_ADDRESSV] = kUnsetAddress;
    // QUIRK: with `spriteUsesZ` there is no matching `DisableZ`, so a sprite drawn while the caller
    // has depth switched off switches it on again.
    EnableZ();
    SetCullMode(cullBefore);
}
