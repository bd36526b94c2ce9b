#pragma once

#include "tests/support/Picture.h"
#include "tests/support/TestDevice.h"

#include <cstring>
#include <d3dx9.h>
#include <functional>
#include <vector>

/// A vertex given by its position on the target.
struct FlatVertex {
    float x, y, z, rhw;
    D3DCOLOR diffuse;
    float u, v;

    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_TEX1;
};

/// A vertex of a model with a normal.
struct ModelVertex {
    float x, y, z;
    float nx, ny, nz;
    D3DCOLOR diffuse;
    float u, v;

    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_DIFFUSE | D3DFVF_TEX1;
};

/// A device of 64 x 64 pixels with the models and textures that the pictures share. Uses only the
/// public interface.
class PictureStage {
public:
    static constexpr UINT kSide = 64;

    PictureStage();
    ~PictureStage();

    IDirect3DDevice9* operator->() const { return device.Device(); }
    IDirect3DDevice9* Device() const { return device.Device(); }
    bool IsUsable() const { return static_cast<bool>(device); }

    /// Clears to a dark grey, runs `draw` in a scene and returns the picture, with alpha 255
    /// throughout.
    Picture Draw(const std::function<void(PictureStage&)>& draw);

    void State(D3DRENDERSTATETYPE state, DWORD value);
    void State(D3DRENDERSTATETYPE state, float value);
    /// Sets the operation and first two arguments of colour, or of alpha.
    void Colour(DWORD stage, DWORD operation, DWORD arg1, DWORD arg2 = D3DTA_CURRENT);
    void Alpha(DWORD stage, DWORD operation, DWORD arg1, DWORD arg2 = D3DTA_CURRENT);
    void Filter(DWORD stage, DWORD filter, DWORD mipFilter = D3DTEXF_NONE);
    void Address(DWORD stage, DWORD u, DWORD v);

    /// A camera at (0, 0, -3) looking along z with a 60 degree field of view; sets world and view.
    void LookAtOrigin();
    void World(const D3DXMATRIX& matrix);

    template <typename Vertex>
    void DrawVertices(D3DPRIMITIVETYPE type, UINT count, const std::vector<Vertex>& vertices)
    {
        Check(Device()->SetFVF(Vertex::kFormat));
        Check(Device()->DrawPrimitiveUP(type, count, vertices.data(), sizeof(Vertex)));
    }

    /// A rectangle on the target, covered once by its texture.
    void Rectangle(float left, float top, float right, float bottom, D3DCOLOR colour,
                   float z = 0.5f, float repeats = 1.0f);
    /// A 2 by 2 quadrilateral in the model's plane z = 0, facing the camera.
    void Board(D3DCOLOR colour = 0xFFFFFFFF, float repeats = 1.0f);
    void Sphere(int rings = 12);

    /// Owned by the stage. Level 0 has `size` by `size` pixels.
    IDirect3DTexture9* Texture(UINT size, const std::function<DWORD(UINT x, UINT y)>& texel,
                               D3DFORMAT format = D3DFMT_A8R8G8B8);
    /// Squares of two colours, eight per side.
    IDirect3DTexture9* Checker(D3DCOLOR a = 0xFFE0E0E0, D3DCOLOR b = 0xFF2040A0);
    /// Red grows along x, green along y, alpha along x.
    IDirect3DTexture9* Gradient();
    /// One colour per level: red, green, blue, yellow, white and so on.
    IDirect3DTexture9* LevelColours();

    static void Check(HRESULT result);

private:
    TestDevice device{kSide, kSide, D3DCREATE_SOFTWARE_VERTEXPROCESSING};
    std::vector<ComHandle<IDirect3DTexture9>> textures;
};
