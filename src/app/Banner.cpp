#include "app/Banner.h"

#include <algorithm>

#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Font.h"
#include "gfx/KRE_Gfx.h"

const char kStoredBanner[kBannerSize] = "RTB3RTC!W2/6!!!GSBNFT!QFS!TFDPOE!&6/2g";

namespace {

constexpr int32_t kFromRight = 250; // pixels
constexpr int32_t kFromBottom = 20; // pixels

} // namespace

void ReadBanner(char (&bannerOut)[kBannerSize])
{
    std::copy_n(kStoredBanner, kBannerSize, bannerOut);
    for (char* letter = bannerOut; *letter; ++letter)
        --*letter;
}

void DrawBanner(const char (&banner)[kBannerSize], double framesPerSecond)
{
    gGfx->SetTextureFilter(kMagnifyPoint, 0);
    gGfx->SetBlendMode(kBlendExclude, 0, 0);
    gGfx->SetFillMode(D3DFILL_SOLID, nullptr);
    gGfx->DisableZ();
    gFont->SetMetrics(1.0f, 0xFFFFFFFF, KRE_Font::kKeep, KRE_Font::kKeep, KRE_Font::kDefaultFactor);
    const int32_t width = gWindowed ? gClientWidth : gResX;
    const int32_t height = gWindowed ? gClientHeight : gResY;
    gGfx->Printf(width - kFromRight, height - kFromBottom, banner, framesPerSecond);
    gGfx->EnableZ();
    // QUIRK: a device starts without blending, and files do not reset it. So an opaque material whose picture
    // has alpha is opaque in the first frame of a run and blended in all later ones. The accepted frames,
    // each from a run of its own, are first frames.
    gGfx->SetBlendMode(kBlendAlpha, 0, 0);
    gGfx->SetTextureFilter(kMagnifyLinear, 0);
}
