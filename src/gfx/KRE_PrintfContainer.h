#pragma once

#include <cstdint>

#include "base/DynaMem.h"
#include "base/KRE_Base.h"
#include "gfx/KRE_Font.h"
#include "gfx/KRE_PrintfLayout.h"
#include "gfx/KRE_PrintfOptions.h"
#include "gfx/KRE_VertexListTemp.h"
#include "gfx/PrintfLine.h"

class KRE_Gfx;

/// Lines of coloured text, drawn with one list of triangles for each font. Lengths are in pixels,
/// from the top left. Reached as `KRE_Gfx::printf`; `KRE_Gfx::Printf` is the usual way in.
class KRE_PrintfContainer : public KRE_Base {
public:
    static constexpr int32_t kVerticesOfCharacter = 6; ///< two triangles
    static constexpr int32_t kListVertices = 256 * kVerticesOfCharacter;

    KRE_PrintfContainer();

    /// Sets the engine, which must outlive the container.
    void SetGfx(KRE_Gfx* newGfx) { gfx = newGfx; }
    /// Creates the triangle list on the engine's device.
    void BuildList(KRE_Gfx* newGfx);
    /// Releases the device objects: the list and the pictures, along with the lines that show them.
    void Free();

    // ---- Lines: KRE_PrintfContainer.cpp

    /// Sets the options that texts start with, until `PopOptions`. They need a font.
    void PushOptions(const KRE_PrintfOptions& newOptions);
    /// Restores the previous options; an empty stack is an `Error`.
    void PopOptions();
    /// Adds a text below the existing lines and returns the rectangle of its lines. An `Error` if
    /// there are no options or they have no font.
    PrintfArea AddText(const char* text);
    /// Forgets all lines.
    void Clear() { lines.Clear(); }
    /// Finds a picture that a text names: in the catalogue, among those of earlier texts, or in a
    /// file of that name. Null if there is none; a file that is not a picture is an `Error`.
    KRE_Texture* FindImage(const char* name);

    int32_t markup = 1;     ///< 1: texts may hold commands (KRE_PrintfMarkup.h)
    float maxWidth = 0.0f;  ///< lines are aligned and drawn within it; 0 is no limit
    float maxHeight = 0.0f; ///< 0 is no limit
    float scrollX = 0.0f;   ///< moves the lines left and up
    float scrollY = 0.0f;
    PrintfLines lines;

    // ---- Drawing: KRE_PrintfDrawing.cpp

    /// Draws the lines with their top left at (`x`, `y`), clipped to the viewport and the limits.
    /// The scene does not hide them. Culling, z and viewport are restored.
    void Draw(float x, float y);
    /// Sets the font of the characters that follow.
    void SetFont(KRE_Font* newFont);
    /// Adds a character at the pen, with its shadow if the options ask for one, and advances the
    /// pen. `alpha` is 0 to 1.
    void AddCharacter(uint8_t c, float alpha);
    /// Draws what has been added so far.
    void Flush();

    KRE_PrintfOptions options; ///< of the piece being drawn
    float penX = 0.0f;         ///< on the screen
    float penY = 0.0f;
    KRE_VertexListTemp<KRE_TLVertex> quadList; ///< locked while it has vertices to draw

private:
    struct Quad {
        float left, top, width, height; // pixels
        float u, v, uSize, vSize;
        D3DCOLOR color;
    };
    struct ClipBox {
        int64_t left, top, right, bottom; // pixels of the target; right and bottom exclusive
    };

    ClipBox FindClipBox(float x, float y) const;
    int32_t FindFirstVisible(float top) const;
    void DrawLines(float x, float y, const ClipBox& box);
    void DrawLine(const PrintfLine& line, float x, float y);
    void DrawPiece(const PrintfEntity& entity, float x, float baseline);
    void DrawBackground(const PrintfEntity& entity, float x, float top);
    void DrawImage(const PrintfEntity& entity, float x, float baseline);
    void AddGlyph(uint8_t c, const KRE_Font::GlyphRect& glyph, float x, float y, D3DCOLOR color);
    void AddQuad(const Quad& quad);
    KRE_Texture* LoadImageOf(const char* name);

    KRE_Gfx* gfx = nullptr;                 // not owned
    DynaMem<KRE_Texture, 128, 1> images;    // loaded by texts, keyed by the name of slot 0
    DynaMem<KRE_PrintfOptions, 8, 1> stack; // the last one is in force
    int32_t writtenVertices = 0;
    KRE_Font* font = nullptr;            // not owned; the current one
    KRE_Texture* batchTexture = nullptr; // not owned; of the written vertices, null for colour
    float textureWidth = 0.0f;           // of the current font, pixels
    float textureHeight = 0.0f;
};
