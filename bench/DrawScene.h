#pragma once

// Drawing 100,000 triangles of 50 pixels each at 640 x 480, the figures of a full scene.

#include "tests/support/HiddenWindow.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <d3d9.h>

namespace draw_bench {

constexpr UINT kWidth = 640, kHeight = 480;
constexpr UINT kTriangles = 100000;
constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_DIFFUSE | D3DFVF_TEX2;

struct Vertex {
    float x, y, z;
    D3DCOLOR diffuse;
    float u0, v0, u1, v1;
};

inline void Check(HRESULT result, const char* what)
{
    if (SUCCEEDED(result))
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

/// A device with a buffer of triangles spread over the target, each half of a square of 10 by 10
/// pixels.
class Scene {
public:
    Scene() : d3d(Direct3DCreate9(D3D_SDK_VERSION))
    {
        D3DPRESENT_PARAMETERS parameters = {};
        parameters.BackBufferWidth = kWidth;
        parameters.BackBufferHeight = kHeight;
        parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
        parameters.BackBufferCount = 1;
        parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
        parameters.hDeviceWindow = window.Handle();
        parameters.Windowed = TRUE;
        parameters.EnableAutoDepthStencil = TRUE;
        parameters.AutoDepthStencilFormat = D3DFMT_D24X8;
        Check(d3d->CreateDevice(0, D3DDEVTYPE_HAL, window.Handle(),
                                D3DCREATE_SOFTWARE_VERTEXPROCESSING, &parameters, &device),
              "CreateDevice");
        MakeTriangles();
        for (DWORD stage = 0; stage < 2; ++stage)
            MakeTexture(stage);
        SetStates();
    }

    ~Scene()
    {
        device->SetStreamSource(0, nullptr, 0, 0);
        vertices->Release();
        for (DWORD stage = 0; stage < 2; ++stage) {
            device->SetTexture(stage, nullptr);
            textures[stage]->Release();
        }
        device->Release();
        d3d->Release();
    }

    /// Draws the triangles over a cleared target.
    void Draw()
    {
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 1.0f, 0);
        device->BeginScene();
        Check(device->DrawPrimitive(D3DPT_TRIANGLELIST, 0, kTriangles), "DrawPrimitive");
        device->EndScene();
    }

    IDirect3DDevice9* Device() const { return device; }

private:
    void MakeTriangles()
    {
        constexpr UINT size = kTriangles * 3 * sizeof(Vertex);
        Check(device->CreateVertexBuffer(size, 0, kFormat, D3DPOOL_MANAGED, &vertices, nullptr),
              "CreateVertexBuffer");
        void* data = nullptr;
        Check(vertices->Lock(0, 0, &data, 0), "Lock");
        auto* out = static_cast<Vertex*>(data);
        uint32_t noise = 1;
        const auto random = [&noise](float most) {
            noise = noise * 1664525 + 1013904223;
            return static_cast<float>(noise >> 8) * most / 16777216.0f;
        };
        for (UINT i = 0; i < kTriangles; ++i) {
            const float x = random(kWidth - 10.0f), y = random(kHeight - 10.0f), z = random(1.0f);
            const float corners[3][2] = {{x, y}, {x + 10.0f, y}, {x, y + 10.0f}};
            for (const auto& corner : corners)
                *out++ = {corner[0] * 2.0f / kWidth - 1.0f,
                          1.0f - corner[1] * 2.0f / kHeight,
                          z,
                          0xFF000000 | noise >> 8,
                          corner[0] / 64.0f,
                          corner[1] / 64.0f,
                          corner[1] / 50.0f,
                          corner[0] / 50.0f};
        }
        vertices->Unlock();
    }

    void MakeTexture(DWORD stage)
    {
        Check(device->CreateTexture(64, 64, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED,
                                    &textures[stage], nullptr),
              "CreateTexture");
        D3DLOCKED_RECT locked = {};
        Check(textures[stage]->LockRect(0, &locked, nullptr, 0), "LockRect");
        auto* texels = static_cast<DWORD*>(locked.pBits);
        for (DWORD i = 0; i < 64 * 64; ++i)
            texels[i] = 0xFF000000 | (i * 2654435761u) >> 8;
        textures[stage]->UnlockRect(0);
    }

    void SetStates()
    {
        device->SetRenderState(D3DRS_LIGHTING, FALSE);
        device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE);
        device->SetFVF(kFormat);
        device->SetStreamSource(0, vertices, 0, sizeof(Vertex));
        for (DWORD stage = 0; stage < 2; ++stage) {
            device->SetTexture(stage, textures[stage]);
            device->SetTextureStageState(stage, D3DTSS_COLOROP, D3DTOP_MODULATE);
            device->SetTextureStageState(stage, D3DTSS_COLORARG1, D3DTA_TEXTURE);
            device->SetTextureStageState(stage, D3DTSS_COLORARG2, D3DTA_CURRENT);
            device->SetTextureStageState(stage, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1);
            device->SetSamplerState(stage, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR);
            device->SetSamplerState(stage, D3DSAMP_MINFILTER, D3DTEXF_LINEAR);
        }
    }

    HiddenWindow window{kWidth, kHeight};
    IDirect3D9* d3d;
    IDirect3DDevice9* device = nullptr;
    IDirect3DVertexBuffer9* vertices = nullptr;
    IDirect3DTexture9* textures[2] = {};
};

/// One row of the table of docs/rasterizer.md.
struct Row {
    const char* name;
    void (*setUp)(IDirect3DDevice9* device);
};

inline void ShowAll(IDirect3DDevice9* device)
{
    device->SetRenderState(D3DRS_ZFUNC, D3DCMP_ALWAYS);
}

inline void Blend(IDirect3DDevice9* device)
{
    ShowAll(device);
    device->SetRenderState(D3DRS_ALPHABLENDENABLE, TRUE);
    device->SetRenderState(D3DRS_SRCBLEND, D3DBLEND_SRCALPHA);
    device->SetRenderState(D3DRS_DESTBLEND, D3DBLEND_INVSRCALPHA);
}

inline void ShowColors(IDirect3DDevice9* device)
{
    ShowAll(device);
    device->SetTexture(0, nullptr);
    device->SetTextureStageState(1, D3DTSS_COLOROP, D3DTOP_DISABLE);
}

/// A pixel shader on two textures, as bytecode.
constexpr DWORD kR = 0x80E40000, kV = 0x90E40000, kC = 0xA0E40000, kTo = 0x800F0000;
constexpr DWORD kTwentyInstructions[] = {
    0xFFFF0200,                                             // ps_2_0
    0x0200001F, 0x80000000, 0xB00F0000,                     // dcl t0
    0x0200001F, 0x80000000, 0xB00F0001,                     // dcl t1
    0x0200001F, 0x80000000, 0x900F0000,                     // dcl v0
    0x0200001F, 0x90000000, 0xA00F0800,                     // dcl_2d s0
    0x0200001F, 0x90000000, 0xA00F0801,                     // dcl_2d s1
    0x03000042, kTo,        0xB0E40000, 0xA0E40800,         // texld r0, t0, s0
    0x03000042, kTo + 1,    0xB0E40001, 0xA0E40801,         // texld r1, t1, s1
    0x03000005, kTo + 2,    kR,         kR + 1,             // mul r2, r0, r1
    0x04000004, kTo + 3,    kR + 2,     kV,         kC,     // mad r3, r2, v0, c0
    0x03000008, kTo + 4,    kR + 2,     kC + 1,             // dp3 r4, r2, c1
    0x0300000B, kTo + 4,    kR + 4,     kC + 2,             // max r4, r4, c2
    0x03000005, kTo + 5,    kR + 4,     kR + 3,             // mul r5, r4, r3
    0x03000002, kTo + 5,    kR + 5,     kC + 3,             // add r5, r5, c3
    0x04000012, kTo + 6,    kR,         kR + 5,     kR + 1, // lrp r6, r0, r5, r1
    0x04000004, kTo + 6,    kR + 6,     kC,         kR + 2, // mad r6, r6, c0, r2
    0x03000008, kTo + 7,    kR + 6,     kR + 6,             // dp3 r7, r6, r6
    0x02000007, kTo + 7,    0x80000007,                     // rsq r7, r7.x
    0x03000005, kTo + 7,    kR + 6,     kR + 7,             // mul r7, r6, r7
    0x0300000A, kTo + 7,    kR + 7,     kC + 1,             // min r7, r7, c1
    0x04000004, kTo + 8,    kR + 7,     kR + 3,     kR + 2, // mad r8, r7, r3, r2
    0x03000005, kTo + 8,    kR + 8,     kV,                 // mul r8, r8, v0
    0x03000002, kTo + 8,    kR + 8,     kC,                 // add r8, r8, c0
    0x02000013, kTo + 9,    kR + 8,                         // frc r9, r8
    0x04000012, kTo + 8,    kC + 1,     kR + 9,     kR + 8, // lrp r8, c1, r9, r8
    0x02000001, 0x800F0800, kR + 8,                         // mov oC0, r8
    0x0000FFFF};

/// The device keeps the shader.
inline void ShadeByProgram(IDirect3DDevice9* device)
{
    constexpr float kValues[] = {0.5f, 0.25f, 0.125f, 1.0f, 0.9f,  0.8f,   0.7f,   1.0f,
                                 0.1f, 0.1f,  0.1f,   0.0f, 0.05f, 0.025f, 0.075f, 0.0f};
    ShowAll(device);
    IDirect3DPixelShader9* shader = nullptr;
    Check(device->CreatePixelShader(kTwentyInstructions, &shader), "CreatePixelShader");
    Check(device->SetPixelShader(shader), "SetPixelShader");
    Check(device->SetPixelShaderConstantF(0, kValues, 4), "SetPixelShaderConstantF");
    shader->Release();
}

constexpr Row kRows[] = {
    {"TwoTextures", [](IDirect3DDevice9*) {}},
    {"TwoTexturesInFront", ShowAll},
    {"TwoTexturesBlended", Blend},
    {"TwoTexturesShader", ShadeByProgram},
    {"VertexColors", ShowColors},
};

} // namespace draw_bench
