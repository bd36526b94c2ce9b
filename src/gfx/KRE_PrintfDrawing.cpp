#include "gfx/KRE_PrintfContainer.h"

#include <algorithm>

#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"

namespace {

constexpr int32_t kLeftMargin = 4;   // pixels by which the clip box extends left of the pen
constexpr float kTexelInset = 0.01f; // keeps a glyph from sampling its neighbour
constexpr float kSizeInset = 0.02f;
constexpr float kPixelCentre = 0.25f;
constexpr float kShadowDrop = 0.1f; // of the letter's height
constexpr float kDepth = 1.0f;

D3DCOLOR WithAlpha(D3DCOLOR color, float alpha)
{
    const int32_t byte = std::clamp(RoundToInt(alpha * 255.0f), 0, 255);
    return (color & 0x00FFFFFF) | static_cast<D3DCOLOR>(byte) << 24;
}

float Rounded(float pixels)
{
    return static_cast<float>(RoundToInt(pixels));
}

} // namespace

void KRE_PrintfContainer::Draw(float x, float y)
{
    const int32_t keptCulling = gfx->cullMode;
    const D3DVIEWPORT9 kept = gfx->viewport;
    gfx->SetCullMode(0);
    gfx->DisableZ();
    const ClipBox box = FindClipBox(x, y);
    if (box.left < box.right && box.top < box.bottom) {
        gfx->SetViewport(static_cast<DWORD>(box.left), static_cast<DWORD>(box.top),
                         static_cast<DWORD>(box.right), static_cast<DWORD>(box.bottom), kept.MinZ,
                         kept.MaxZ);
        DrawLines(x, y, box);
        Flush();
        gfx->SetViewport(kept.X, kept.Y, kept.X + kept.Width, kept.Y + kept.Height, kept.MinZ,
                         kept.MaxZ);
    }
    font = nullptr; // it may be gone by the next call
    gfx->EnableZ();
    gfx->SetCullMode(keptCulling);
}

KRE_PrintfContainer::ClipBox KRE_PrintfContainer::FindClipBox(float x, float y) const
{
    const D3DVIEWPORT9& viewport = gfx->viewport;
    ClipBox box{viewport.X, viewport.Y, int64_t{viewport.X} + viewport.Width,
                int64_t{viewport.Y} + viewport.Height};
    if (maxWidth > 0.0f) {
        box.left = std::max(box.left, int64_t{RoundToInt(x)} - kLeftMargin);
        box.right = std::min(box.right, int64_t{RoundToInt(x + maxWidth)});
    }
    if (maxHeight > 0.0f) {
        box.top = std::max(box.top, int64_t{RoundToInt(y)});
        box.bottom = std::min(box.bottom, int64_t{RoundToInt(y + maxHeight)});
    }
    return box;
}

/// The first line that extends below `top`, a y position in the text. Lines are ordered from top to
/// bottom.
int32_t KRE_PrintfContainer::FindFirstVisible(float top) const
{
    int32_t first = 0;
    int32_t end = lines.Count();
    while (first < end) {
        const int32_t middle = first + (end - first) / 2;
        if (lines.Get(middle)->Bottom() <= top)
            first = middle + 1;
        else
            end = middle;
    }
    return first;
}

void KRE_PrintfContainer::DrawLines(float x, float y, const ClipBox& box)
{
    const float top = static_cast<float>(box.top) - y + scrollY;
    const float bottom = static_cast<float>(box.bottom) - y + scrollY;
    for (int32_t i = FindFirstVisible(top); i < lines.Count(); ++i) {
        const PrintfLine& line = *lines.Get(i);
        if (line.y >= bottom)
            return;
        DrawLine(line, x - scrollX, y - scrollY);
    }
}

void KRE_PrintfContainer::DrawLine(const PrintfLine& line, float x, float y)
{
    const float baseline = y + line.y + line.ascent;
    for (const PrintfEntity* entity : line.entities) {
        if (entity->kind == PrintfEntity::kText)
            DrawPiece(*entity, x + line.x, baseline);
        else
            DrawImage(*entity, x + line.x, baseline);
    }
}

void KRE_PrintfContainer::DrawPiece(const PrintfEntity& entity, float x, float baseline)
{
    if (entity.options.font != font) {
        Flush();
        SetFont(entity.options.font);
    }
    options = entity.options;
    penX = x + entity.x;
    penY = baseline - font->lineSpacingFactor * font->GlyphHeight() * options.scaleY;
    if (options.background >> 24 != 0)
        DrawBackground(entity, penX, penY);
    const char* const text = entity.text.c_str();
    for (int32_t i = 0; i < entity.length; ++i) {
        AddCharacter(static_cast<uint8_t>(text[i]), options.alpha);
        if (text[i] == ' ')
            penX += entity.wordSpacing;
    }
}

/// A plain rectangle as high as the line spacing.
void KRE_PrintfContainer::DrawBackground(const PrintfEntity& entity, float x, float top)
{
    Flush();
    KRE_Texture* const fontTexture = batchTexture;
    batchTexture = nullptr;
    AddQuad({Rounded(x) - kPixelCentre, Rounded(top) - kPixelCentre, entity.width - kSizeInset,
             font->LineHeight() * options.scaleY - kSizeInset, 0.0f, 0.0f, 0.0f, 0.0f,
             options.background});
    Flush();
    batchTexture = fontTexture;
}

/// A picture is a batch of its own; the next letters set their font again.
void KRE_PrintfContainer::DrawImage(const PrintfEntity& entity, float x, float baseline)
{
    Flush();
    font = nullptr;
    const KRE_Texture& image = *entity.image;
    batchTexture = entity.image;
    const float height = image.sourceHeight * entity.options.scaleY;
    AddQuad({Rounded(x + entity.x) - kPixelCentre, Rounded(baseline - height) - kPixelCentre,
             entity.width - kSizeInset, height - kSizeInset, image.originU, image.originV,
             image.axisAU, image.axisBV, WithAlpha(0xFFFFFFFF, entity.options.alpha)});
    Flush();
}

void KRE_PrintfContainer::SetFont(KRE_Font* newFont)
{
    font = newFont;
    batchTexture = font->texture.get();
    textureWidth = static_cast<float>(batchTexture->width);
    textureHeight = static_cast<float>(batchTexture->height);
}

void KRE_PrintfContainer::AddCharacter(uint8_t c, float alpha)
{
    const KRE_Font::GlyphRect* glyph = font->FindGlyph(c);
    if (!glyph)
        return;
    if (options.shadow) {
        const float height = static_cast<float>(glyph->bottom - glyph->top) * font->scale;
        AddGlyph(c, *glyph, penX + font->scale * options.scaleX,
                 penY + kShadowDrop * height * options.scaleY,
                 WithAlpha(options.shadowColor, alpha));
    }
    AddGlyph(c, *glyph, penX, penY, WithAlpha(options.color, alpha));
    penX += font->CharWidth(c) * options.scaleX;
}

void KRE_PrintfContainer::AddGlyph(uint8_t c, const KRE_Font::GlyphRect& glyph, float x, float y,
                                   D3DCOLOR color)
{
    const auto width = static_cast<float>(glyph.right - glyph.left);
    const auto height = static_cast<float>(glyph.bottom - glyph.top);
    const float scaleX = font->scale * options.scaleX;
    const float bearing = font->leftBearing[c - KRE_Font::kFirstGlyph] * scaleX;
    AddQuad({Rounded(x) - bearing - kPixelCentre, Rounded(y) - kPixelCentre,
             width * scaleX - kSizeInset, height * font->scale * options.scaleY - kSizeInset,
             (static_cast<float>(glyph.left) + kTexelInset) / textureWidth,
             (static_cast<float>(glyph.top) + kTexelInset) / textureHeight,
             (width - kSizeInset) / textureWidth, (height - kSizeInset) / textureHeight, color});
}

void KRE_PrintfContainer::AddQuad(const Quad& quad)
{
    static constexpr struct {
        float right, down;
    } kCorners[kVerticesOfCharacter] = {{0.0f, 0.0f}, {1.0f, 0.0f}, {0.0f, 1.0f},
                                        {0.0f, 1.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}};
    if (!quadList.IsLocked())
        quadList.LockVertices(0, kListVertices, 0);
    KRE_TLVertex* vertex = quadList.GetVertices() + writtenVertices;
    for (const auto& corner : kCorners)
        *vertex++ = {quad.left + corner.right * quad.width,
                     quad.top + corner.down * quad.height,
                     kDepth,
                     1.0f,
                     quad.color,
                     kNoSpecular,
                     quad.u + corner.right * quad.uSize,
                     quad.v + corner.down * quad.vSize};
    writtenVertices += kVerticesOfCharacter;
    if (writtenVertices == kListVertices)
        Flush();
}

void KRE_PrintfContainer::Flush()
{
    if (writtenVertices == 0)
        return;
    quadList.Unlock();
    gfx->SetBlendMode(kBlendAlpha, 255, 0);
    gfx->SetTexture(batchTexture);
    gfx->DrawTriangleList(quadList, nullptr, writtenVertices / 3);
    writtenVertices = 0;
}
