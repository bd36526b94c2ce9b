// Pictures that the program fills while it runs.

#include "gfx/KRE_TextureLoading.h"

#include <cstring>

#include "base/FormatText.h"
#include "base/ParseNumber.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_Surface.h"

void KRE_TextureLoading::LoadVideoTexture(KRE_Texture& texture, const char* number, int32_t format)
{
    const int32_t source = ToInt32(ParseDouble(number, number + std::strlen(number)));
    if (source < 0 || source >= KRE_Gfx::kVideoSources)
        gfx.Error("Invalid video source for texture: %i", source);
    texture.SetDevice(gfx.device.Get());
    // One name for all spellings, because the entry has only one texture.
    char name[32];
    FormatText(name, sizeof name, ">>Video%i", source);
    if (!ShareTexture(texture, name))
        MakeVideoTexture(texture, name, source, format);
    texture.videoSource = source;
    texture.sourceWidth = static_cast<float>(gfx.videoSources[source].width);
    texture.sourceHeight = static_cast<float>(gfx.videoSources[source].height);
    if (texture.sequenceCount == 0)
        texture.slotFileInfo[texture.currentSlot].isVideo = 1;
    texture.Refresh();
}

void KRE_TextureLoading::MakeVideoTexture(KRE_Texture& texture, const char* name, int32_t source,
                                          int32_t format)
{
    KRE_VideoSource& entry = gfx.videoSources[source];
    if (int64_t{entry.width} * entry.height < 1)
        gfx.Error("Invalid video source specifications for source %i", source);
    D3DFORMAT chosen = entry.format;
    if (chosen == D3DFMT_UNKNOWN)
        chosen = format == -1 ? gfx.backBufferFormat : static_cast<D3DFORMAT>(format);
    entry.texture = MakeDeviceTexture(entry.width, entry.height, 1, 0, chosen, D3DPOOL_MANAGED,
                                      "CreateTexture for video source failed: %s ");
    RegisterTexture(texture, entry.texture, name);
}

void KRE_TextureLoading::UpdateVideoSource(int32_t source)
{
    if (source < 0 || source >= KRE_Gfx::kVideoSources)
        gfx.Error("Invalid video source nurber in UpdateVideoSource(): %i", source);
    const KRE_VideoSource& entry = gfx.videoSources[source];
    if (!entry.update)
        gfx.Error("No video source update function specified for source %i", source);
    ComPointer<IDirect3DSurface9> level;
    gfx.Check(entry.texture ? entry.texture->GetSurfaceLevel(0, level.Out()) : D3DERR_INVALIDCALL,
              "GetSurfaceLevel of video source failed: %s");
    KRE_Surface surface;
    surface.device = gfx.device.Get();
    surface.SetSurface(std::move(level));
    entry.update(&surface, entry.userWord);
}
