// Pictures from files.

#include "gfx/KRE_TextureLoading.h"

#include "base/Ascii.h"
#include "base/File.h"
#include "base/FormatText.h"
#include "base/Paths.h"
#include "base/WithMemory.h"
#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_TextureRequest.h"

namespace {

constexpr const char* kVideoPrefix = ">>Video";
constexpr size_t kVideoPrefixLength = 7;

struct LoadMode {
    KRE_LoadMode mode;
    DWORD usage;
    D3DPOOL pool;
};

constexpr LoadMode kLoadModes[] = {
    {kLoadTextureManaged, 0, D3DPOOL_MANAGED},
    {kLoadTextureDefaultPool, 0, D3DPOOL_DEFAULT},
    {kLoadTextureManagedToo, 0, D3DPOOL_MANAGED},
    {kLoadTextureRenderTarget, D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT},
};

const LoadMode* FindLoadMode(int32_t mode)
{
    for (const LoadMode& entry : kLoadModes) {
        if (entry.mode == mode)
            return &entry;
    }
    return nullptr;
}

} // namespace

bool IsVideoName(const String& name)
{
    return CompareNoCase(name.c_str(), kVideoPrefix, kVideoPrefixLength) == 0;
}

void KRE_TextureLoading::LoadTexture(KRE_Texture* texture, const char* file, D3DCOLOR colorKey,
                                     int32_t mode, int32_t format, int32_t mipLevels)
{
    char name[kMessageSize]; // the load may free the memory of `file`
    CopyText(name, sizeof name, file);
    WithMemory([&] { LoadFile(texture, file, colorKey, mode, format, mipLevels); },
               [&] { gfx.Error("Out of memory for resource '%s'", name); });
}

void KRE_TextureLoading::LoadFile(KRE_Texture* texture, const char* file, D3DCOLOR colorKey,
                                  int32_t mode, int32_t format, int32_t mipLevels)
{
    if (!texture)
        gfx.Error("KRE_Texture pointer in LoadTexture is NULL pointer!");
    const String name(file); // the text may be part of what is freed below
    if (name.IsEmpty())
        gfx.Error("Invalid file name in LoadTexture");
    gfx.CheckPath(name.c_str());
    if (IsVideoName(name)) {
        LoadVideoTexture(*texture, name.c_str() + kVideoPrefixLength, format);
        return;
    }

    // The bits of the default, -1, are not flags.
    const int32_t asked = mode == kLoadTextureUnset ? kLoadTextureManaged : mode;
    if (!(asked & KRE_Gfx::kKeepTexture))
        texture->FreeCurrent();
    texture->SetDevice(gfx.device.Get());
    KRE_TextureRequest request;
    request.colorKey = colorKey;
    request.stretch = !(asked & KRE_Gfx::kNoStretch);
    request.mode = asked & ~(KRE_Gfx::kKeepTexture | KRE_Gfx::kNoStretch);
    request.format = format;
    request.mipLevels = gfx.caps.TextureCaps & D3DPTEXTURECAPS_MIPMAP ? mipLevels : 0;
    const LoadMode* entry = FindLoadMode(request.mode);
    if (!entry)
        gfx.Error("Wrong texture parameter in LoadTexture!");
    request.usage = entry->usage;
    request.pool = entry->pool;

    if (!FileExists(name.c_str()))
        gfx.Error("Can not open file %s", name.c_str());
    if (name.EndsWith(kFrameListExtension))
        LoadFrameList(*texture, name, request);
    else if (gfx.noTextures)
        ShareScreenTexture(*texture);
    else
        LoadImageFile(*texture, name, request);
}

void KRE_TextureLoading::ShareScreenTexture(KRE_Texture& texture)
{
    if (!gfx.screenTexture.IsValid())
        MakePlaceholder(&gfx.screenTexture);
    const int32_t id =
        gfx.textureManager.Acquire(gfx.screenTexture.slotIds[gfx.screenTexture.currentSlot]);
    texture.PutTexture(&gfx.textureManager, id, gfx.screenTexture.current);
    texture.sourceWidth = gfx.screenTexture.sourceWidth;
    texture.sourceHeight = gfx.screenTexture.sourceHeight;
    texture.Refresh();
}

/// Size of a file in bytes, or -1 if it cannot be opened.
static int32_t MeasureFile(const char* name)
{
    File file;
    return file.Open(name, true, false, false) ? file.GetSize() : -1;
}

static String NameOfResource(const String& leaf, int32_t sizeBytes)
{
    String name(leaf);
    if (sizeBytes >= 0)
        name.Format("%s_%i", leaf.c_str(), sizeBytes);
    return name;
}

void KRE_TextureLoading::MakeResourceName(String* nameOut, const char* file)
{
    String leaf;
    SplitLeaf(file, &leaf);
    *nameOut = NameOfResource(leaf, MeasureFile(file));
}

void KRE_TextureLoading::LoadImageFile(KRE_Texture& texture, const String& file,
                                       const KRE_TextureRequest& request)
{
    String leaf;
    SplitLeaf(file.c_str(), &leaf);
    const int32_t sizeBytes = MeasureFile(file.c_str());
    const String resourceName = NameOfResource(leaf, sizeBytes);
    D3DXIMAGE_INFO info = {};
    gfx.lastResult = D3DXGetImageInfoFromFile(file.c_str(), &info);
    if (FAILED(gfx.lastResult))
        gfx.Error(" D3DXGetImageInfoFromFile failed: %s (file:%s)",
                  DirectXErrorName(gfx.lastResult), file.c_str());
    const bool isFrame = texture.sequenceCount > 0;
    // QUIRK: frames are registered under a name that no load looks up, so they share the pictures
    // of plain textures but not each other's.
    if (!ShareTexture(texture, resourceName.c_str()))
        RegisterTexture(texture, CreateFromImage(file, info, request),
                        isFrame ? leaf.c_str() : resourceName.c_str());
    if (!isFrame)
        texture.slotFileInfo[texture.currentSlot].sizeBytes = sizeBytes;

    texture.sourceWidth = static_cast<float>(info.Width);
    texture.sourceHeight = static_cast<float>(info.Height);
    texture.Refresh();
    const int32_t width = request.stretch ? texture.width : static_cast<int32_t>(info.Width);
    const int32_t height = request.stretch ? texture.height : static_cast<int32_t>(info.Height);
    texture.SetRectFromPixels(0, 0, width, height, false, false);
}

ComPointer<IDirect3DTexture9> KRE_TextureLoading::CreateFromImage(const String& file,
                                                                  D3DXIMAGE_INFO& info,
                                                                  const KRE_TextureRequest& request)
{
    const D3DFORMAT format = request.format == -1 ? gfx.ChooseTextureFormat(info)
                                                  : static_cast<D3DFORMAT>(request.format);
    UINT width = 0; // the file's
    UINT height = 0;
    DWORD mipFilter = D3DX_FILTER_BOX;
    const bool isOdd = !IsPowerOfTwo(info.Width) || !IsPowerOfTwo(info.Height);
    if (!NeedsPowersOfTwo() && isOdd) {
        if (request.mipLevels == 1 || !IsBlockFormat(format)) {
            mipFilter = D3DX_FILTER_LINEAR;
        } else if (request.stretch) {
            width = NextPowerOfTwo(info.Width);
            height = NextPowerOfTwo(info.Height);
        } else {
            // QUIRK: the warning leaves the name empty.
            gfx.Warning(
                "Loading none-power of 2 texture '%s' with options: mipmaps+noStretch+compressed",
                "");
        }
    }
    ComPointer<IDirect3DTexture9> made;
    gfx.lastResult = gfx.runtime.createTextureFromFile(
        gfx.device.Get(), file.c_str(), width, height, static_cast<UINT>(request.mipLevels),
        request.usage, format, request.pool,
        request.stretch ? D3DX_FILTER_LINEAR : D3DX_FILTER_NONE, mipFilter, request.colorKey, &info,
        nullptr, made.Out());
    CheckCreated(file.c_str());
    return made;
}

/// Of the call that made a texture from a file.
void KRE_TextureLoading::CheckCreated(const char* file)
{
    if (FAILED(gfx.lastResult))
        gfx.Error(" D3DXCreateTextureFromFileA failed: %s (file:%s)",
                  DirectXErrorName(gfx.lastResult), file);
}
