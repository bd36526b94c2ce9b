#include "gfx/KRE_PrintfContainer.h"

#include <algorithm>
#include <cstring>

#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_PrintfMarkup.h"

namespace {

constexpr int32_t kOneMipLevel = 1;

/// Whether the catalogue can hold the name: its tree accepts printable ASCII only.
bool IsCatalogueName(const char* name)
{
    return std::all_of(name, name + std::strlen(name), [](char c) { return c >= 32; });
}

} // namespace

KRE_PrintfContainer::KRE_PrintfContainer()
{
    SetClassName("KRE_PrintfContainer");
}

void KRE_PrintfContainer::BuildList(KRE_Gfx* newGfx)
{
    SetGfx(newGfx);
    writtenVertices = 0;
    gfx->CreateVertexList(&quadList, kListVertices, -1, 1);
}

void KRE_PrintfContainer::Free()
{
    Clear();
    images.Clear();
    quadList.Free();
    writtenVertices = 0;
}

void KRE_PrintfContainer::PushOptions(const KRE_PrintfOptions& newOptions)
{
    stack.Added(stack.Add(&newOptions));
}

void KRE_PrintfContainer::PopOptions()
{
    if (stack.Count() == 0)
        Error("No text options to take back");
    stack.Delete(stack.Count() - 1);
}

PrintfArea KRE_PrintfContainer::AddText(const char* text)
{
    if (stack.Count() == 0 || !stack.Get(stack.Count() - 1)->font)
        Error("Tried to set invalid font");
    KRE_PrintfOptions beginning = *stack.Get(stack.Count() - 1);
    beginning.scaleX = beginning.scaleY = 1.0f;
    KRE_PrintfLayout layout(lines, beginning);
    if (markup) {
        ScanPrintfMarkup(text, *this, layout);
    } else {
        for (; *text; ++text)
            layout.AddCharacter(*text);
    }
    return layout.Finish(maxWidth);
}

KRE_Texture* KRE_PrintfContainer::FindImage(const char* name)
{
    KRE_Texture* image = IsCatalogueName(name) ? gfx->catalogue.GetTexture(name) : nullptr;
    if (image)
        return image;
    for (KRE_Texture* loaded : images) {
        if (std::strcmp(loaded->slotNames[0].c_str(), name) == 0)
            return loaded;
    }
    return FileExists(name) ? LoadImageOf(name) : nullptr;
}

KRE_Texture* KRE_PrintfContainer::LoadImageOf(const char* name)
{
    const int32_t slot = images.Add();
    KRE_Texture* image = &images.Added(slot);
    gfx->LoadTexture(image, name, 0, kLoadTextureUnset, -1, kOneMipLevel);
    image->slotNames[0].Assign(name);
    return image;
}
