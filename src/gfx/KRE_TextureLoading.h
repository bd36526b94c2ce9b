#pragma once

#include <cstdint>

#include <d3d9.h>
#include <d3dx9.h>

#include "base/String.h"
#include "platform/ComPointer.h"

class KRE_Gfx;
class KRE_Texture;
struct KRE_TextureRequest;

/// Fills textures with pictures from files, lists of frames and video sources, or with empty ones.
/// A picture belongs to the engine's texture manager, through which its users share it. `KRE_Gfx`
/// owns the only instance and forwards to it. Sizes are in pixels.
class KRE_TextureLoading {
public:
    explicit KRE_TextureLoading(KRE_Gfx& engine) : gfx(engine) {}

    /// Loads a picture, a list of frames (".ifl") or a video source (">>Video" and its number) into
    /// the current frame or slot. Files are shared by name and size. `mode` is a KRE_LoadMode, with
    /// flags of `KRE_Gfx`. `format` is a D3DFORMAT or -1 to choose by the file, `mipLevels` 0 means
    /// the full chain. Whatever cannot be loaded is an `Error`.
    void LoadTexture(KRE_Texture* texture, const char* file, D3DCOLOR colorKey, int32_t mode,
                     int32_t format, int32_t mipLevels);
    /// The picture of a file that holds a cube or a volume, with all levels, if the device has such
    /// textures; null for any other file. One that cannot be loaded is an `Error`.
    ComPointer<IDirect3DBaseTexture9> LoadSolidTexture(const char* file);
    /// Makes an empty picture in the current frame or slot. `mode` is a KRE_CreateMode. A `format` of
    /// -1 is the back buffer's.
    void CreateTexture(KRE_Texture* texture, int32_t width, int32_t height, int32_t mode,
                       int32_t format, int32_t mipLevels);
    /// Makes a small grey picture in place of a missing one.
    void MakePlaceholder(KRE_Texture* texture);
    /// The name under which a file is shared: its leaf and its size, to keep files of the same name
    /// in two directories apart. The leaf alone if it cannot be opened.
    static void MakeResourceName(String* nameOut, const char* file);
    /// Lets a video source fill its texture. A source that is not set up is an `Error`.
    void UpdateVideoSource(int32_t source);

private:
    void LoadFile(KRE_Texture* texture, const char* file, D3DCOLOR colorKey, int32_t mode,
                  int32_t format, int32_t mipLevels);
    void LoadImageFile(KRE_Texture& texture, const String& file, const KRE_TextureRequest& request);
    ComPointer<IDirect3DTexture9> CreateFromImage(const String& file, D3DXIMAGE_INFO& info,
                                                  const KRE_TextureRequest& request);
    void CheckCreated(const char* file);
    void LoadFrameList(KRE_Texture& texture, const String& file, const KRE_TextureRequest& request);
    void LoadVideoTexture(KRE_Texture& texture, const char* number, int32_t format);
    void MakeVideoTexture(KRE_Texture& texture, const char* name, int32_t source, int32_t format);
    bool NeedsPowersOfTwo() const;
    ComPointer<IDirect3DTexture9> MakeDeviceTexture(int32_t width, int32_t height,
                                                    int32_t mipLevels, DWORD usage,
                                                    D3DFORMAT format, D3DPOOL pool,
                                                    const char* failureText);
    void RegisterTexture(KRE_Texture& texture, ComPointer<IDirect3DTexture9> made,
                         const char* name);
    bool ShareTexture(KRE_Texture& texture, const char* name);
    void ShareScreenTexture(KRE_Texture& texture);

    KRE_Gfx& gfx; ///< the owner
};
