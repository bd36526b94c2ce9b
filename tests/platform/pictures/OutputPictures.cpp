// The steps between a shaded pixel and the target.

#include "tests/platform/pictures/PictureProgram.h"

#include "tests/support/ComHandle.h"

namespace {

/// A sheet of source and target factors over a gradient of colours and alphas.
void BlendSheet(PictureStage& stage)
{
    constexpr DWORD kSources[] = {D3DBLEND_ONE, D3DBLEND_SRCALPHA, D3DBLEND_DESTCOLOR,
                                  D3DBLEND_INVDESTCOLOR};
    constexpr DWORD kTargets[] = {D3DBLEND_ZERO, D3DBLEND_ONE, D3DBLEND_INVSRCALPHA,
                                  D3DBLEND_INVSRCCOLOR};
    stage.Rectangle(0, 0, 64, 64, 0xFF406080);
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) {
            stage.State(D3DRS_SRCBLEND, kSources[row]);
            stage.State(D3DRS_DESTBLEND, kTargets[column]);
            const auto left = static_cast<float>(column * 16);
            const auto top = static_cast<float>(row * 16);
            stage.Rectangle(left, top, left + 15, top + 15, 0xFFFFFFFF);
        }
}

void BlendOperations(PictureStage& stage)
{
    stage.Rectangle(0, 0, 64, 64, 0xFF406080);
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    stage.State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    for (DWORD operation = D3DBLENDOP_ADD; operation <= D3DBLENDOP_MAX; ++operation) {
        stage.State(D3DRS_BLENDOP, operation);
        const float top = static_cast<float>(operation - 1) * 12.0f;
        stage.Rectangle(0, top, 64, top + 11, 0xFFFFFFFF);
    }
}

void BlendFactorColour(PictureStage& stage)
{
    stage.Rectangle(0, 0, 64, 64, 0xFF0000FF);
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_BLENDFACTOR, static_cast<DWORD>(0xFFC08040));
    stage.State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_BLENDFACTOR));
    stage.State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_INVBLENDFACTOR));
    stage.Rectangle(16, 16, 48, 48, 0xFFFFFF00);
}

/// Every comparison function against the middle of the alpha gradient.
void AlphaTests(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.State(D3DRS_ALPHATESTENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_ALPHAREF, static_cast<DWORD>(128));
    for (DWORD function = D3DCMP_NEVER; function <= D3DCMP_ALWAYS; ++function) {
        stage.State(D3DRS_ALPHAFUNC, function);
        const float top = static_cast<float>(function - 1) * 8.0f;
        stage.Rectangle(0, top, 64, top + 7, 0xFFFFFFFF);
    }
}

/// Every comparison function against three depths: nearer, equal, farther.
void DepthTests(PictureStage& stage)
{
    for (DWORD function = D3DCMP_NEVER; function <= D3DCMP_ALWAYS; ++function) {
        const float top = static_cast<float>(function - 1) * 8.0f;
        stage.State(D3DRS_ZFUNC, static_cast<DWORD>(D3DCMP_ALWAYS));
        stage.Rectangle(0, top, 64, top + 7, 0xFF303080, 0.5f);
        stage.State(D3DRS_ZFUNC, function);
        stage.Rectangle(2, top, 20, top + 7, 0xFFFF4040, 0.25f);
        stage.Rectangle(22, top, 40, top + 7, 0xFF40FF40, 0.5f);
        stage.Rectangle(42, top, 60, top + 7, 0xFFFFFF40, 0.75f);
    }
}

void WriteMasks(PictureStage& stage)
{
    for (DWORD mask = 0; mask < 8; ++mask) {
        stage.State(D3DRS_COLORWRITEENABLE, mask);
        const float top = static_cast<float>(mask) * 8.0f;
        stage.Rectangle(0, top, 64, top + 7, 0xFFE0C0A0);
    }
}

void Scissor(PictureStage& stage)
{
    const RECT area = {10, 20, 50, 44};
    stage->SetScissorRect(&area);
    stage.State(D3DRS_SCISSORTESTENABLE, static_cast<DWORD>(TRUE));
    stage.Rectangle(0, 0, 64, 64, 0xFFFF8040);
    stage.State(D3DRS_SCISSORTESTENABLE, static_cast<DWORD>(FALSE));
}

void Viewport(PictureStage& stage)
{
    const D3DVIEWPORT9 viewport = {8, 24, 40, 24, 0.0f, 1.0f};
    stage->SetViewport(&viewport);
    stage.LookAtOrigin();
    stage.Sphere();
    stage.Board(0xFF4080FF);
}

/// The second viewport's depth range is in front of the first one's.
void ViewportDepth(PictureStage& stage)
{
    stage.LookAtOrigin();
    D3DVIEWPORT9 viewport = {0, 0, 64, 64, 0.5f, 1.0f};
    stage->SetViewport(&viewport);
    stage.Sphere();
    viewport.MinZ = 0.0f;
    viewport.MaxZ = 0.5f;
    stage->SetViewport(&viewport);
    D3DXMATRIX behind;
    D3DXMatrixTranslation(&behind, 0.5f, 0.5f, 2.0f);
    stage.World(behind);
    stage.Board(0xFF40FF80);
}

void DepthBias(PictureStage& stage)
{
    stage.Rectangle(0, 0, 64, 64, 0xFF404080, 0.5f);
    stage.Rectangle(8, 8, 56, 56, 0xFFFF4040, 0.51f);
    stage.State(D3DRS_DEPTHBIAS, -0.02f);
    stage.Rectangle(16, 16, 48, 48, 0xFF40FF40, 0.51f);
}

/// Draws into a texture, then shows it.
void TargetInTexture(PictureStage& stage)
{
    IDirect3DTexture9* made = nullptr;
    PictureStage::Check(stage->CreateTexture(32, 32, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8,
                                             D3DPOOL_DEFAULT, &made, nullptr));
    const ComHandle<IDirect3DTexture9> texture(made);
    IDirect3DSurface9 *level = nullptr, *back = nullptr;
    made->GetSurfaceLevel(0, &level);
    stage->GetRenderTarget(0, &back);
    const ComHandle<IDirect3DSurface9> target(level), screen(back);
    PictureStage::Check(stage->SetRenderTarget(0, level));
    stage->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF600000, 1.0f, 0);
    stage.State(D3DRS_ZENABLE, static_cast<DWORD>(FALSE));
    stage.Rectangle(4, 4, 20, 28, 0xFF00C040);
    stage.Rectangle(12, 12, 28, 20, 0xFF0040FF);
    PictureStage::Check(stage->SetRenderTarget(0, back));
    stage->SetTexture(0, made);
    stage.Rectangle(8, 8, 56, 56, 0xFFFFFFFF, 0.5f, 1.5f);
    stage->SetTexture(0, nullptr);
}

struct Shiny {
    float x, y, z, rhw;
    D3DCOLOR diffuse, specular;
    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_SPECULAR;
};

void SpecularAdded(PictureStage& stage)
{
    stage.State(D3DRS_SPECULARENABLE, static_cast<DWORD>(TRUE));
    stage.DrawVertices(D3DPT_TRIANGLELIST, 1,
                       std::vector<Shiny>{{2.25f, 60.25f, 0.5f, 1, 0xFF800000, 0xFF008000},
                                          {32.25f, 2.25f, 0.5f, 1, 0xFF008000, 0xFF000080},
                                          {61.25f, 60.25f, 0.5f, 1, 0xFF000080, 0xFFFFFFFF}});
}

/// Without a texture, an alpha operation that reads one uses the vertex's alpha.
void BlendUntextured(PictureStage& stage)
{
    stage.Rectangle(0, 0, 64, 64, 0xFF204060);
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_SRCALPHA));
    stage.State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    stage.State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0x40FFFFFF));
    stage.Colour(0, D3DTOP_SELECTARG2, D3DTA_TEXTURE, D3DTA_DIFFUSE);
    stage.Alpha(0, D3DTOP_MODULATE, D3DTA_TFACTOR, D3DTA_TEXTURE);
    stage.Rectangle(4, 4, 60, 28, 0xFF808080);
    stage.Alpha(0, D3DTOP_SELECTARG1, D3DTA_TFACTOR);
    stage.Rectangle(4, 36, 60, 60, 0x80808080);
}

/// Two tilted boards in one plane: the slope-scaled bias makes the second one win everywhere.
void SlopeDepthBias(PictureStage& stage)
{
    stage.LookAtOrigin();
    D3DXMATRIX turn;
    D3DXMatrixRotationY(&turn, 1.0f);
    stage.World(turn);
    stage.Board(0xFF4060C0);
    D3DXMATRIX shrink;
    D3DXMatrixScaling(&shrink, 0.5f, 0.5f, 1.0f);
    stage.World(shrink * turn);
    stage.State(D3DRS_SLOPESCALEDEPTHBIAS, -2.0f);
    stage.Board(0xFFE0A020);
}

} // namespace

const std::vector<PictureProgram> kOutputPictures = {
    {"blend_sheet", BlendSheet, 2, 0},
    {"blend_operations", BlendOperations, 2, 0},
    {"blend_factor_colour", BlendFactorColour, 2, 0},
    {"alpha_tests", AlphaTests, 2, 0},
    {"depth_tests", DepthTests, 2, 0},
    {"write_masks", WriteMasks, 2, 0},
    {"scissor", Scissor, 2, 0},
    {"viewport", Viewport, 2, 0},
    {"viewport_depth", ViewportDepth, 2, 0},
    {"depth_bias", DepthBias, 2, 0},
    {"target_in_texture", TargetInTexture, 2, 0},
    {"specular_added", SpecularAdded, 2, 0},
    {"blend_untextured", BlendUntextured, 2, 0},
    {"slope_depth_bias", SlopeDepthBias, 2, 0},
};
