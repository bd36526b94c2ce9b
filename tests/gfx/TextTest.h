#pragma once

#include "gfx/KRE_Font.h"
#include "tests/gfx/EngineTest.h"

/// What one character looks like on the screen: where it stands, where it lies on the sheet.
struct GlyphQuad {
    float left, top, right, bottom; // pixels of the screen
    float u, v, uEnd, vEnd;         // of the sheet, 0 to 1
    D3DCOLOR color;
};

/// An engine over recorded calls with the engine's own font at scale 1: letters of 5 x 5 pixels, 6
/// from one to the next and from line to line (5 and the spacing 1).
class TextTest : public EngineTest {
protected:
    TextTest()
    {
        Start();
        gfx.BuildFont(font, 0xFF96DCFF, 0xFF006473);
        gfx.SetFont(&font, 0.0f, 0);
        options.font = &font;
        recorder->ClearLines();
    }

    /// The first `count` quads that were put last.
    std::vector<GlyphQuad> Quads(int32_t count)
    {
        std::vector<GlyphQuad> quads;
        const KRE_TLVertex* vertex = gfx.printf.quadList.LockVertices(0, 0, D3DLOCK_READONLY);
        for (; count > 0; --count, vertex += KRE_PrintfContainer::kVerticesOfCharacter) {
            const KRE_TLVertex& first = vertex[0];
            const KRE_TLVertex& last = vertex[5];
            quads.push_back({first.x, first.y, last.x, last.y, first.tu, first.tv, last.tu, last.tv,
                             first.diffuse});
        }
        gfx.printf.quadList.Unlock();
        return quads;
    }

    /// Lays a text out with `options` in place of all lines before.
    PrintfArea Lay(const char* text)
    {
        gfx.printf.Clear();
        gfx.printf.PushOptions(options);
        const PrintfArea area = gfx.printf.AddText(text);
        gfx.printf.PopOptions();
        return area;
    }

    /// The calls of drawing and of the view, without stages, blending and transforms.
    std::vector<std::string> ViewCalls()
    {
        std::vector<std::string> calls;
        for (const std::string& line : Calls()) {
            for (const char* start :
                 {"SetViewport ", "SetRenderState D3DRS_CULLMODE ", "SetRenderState D3DRS_ZENABLE ",
                  "SetTexture 0 ", "DrawPrim"}) {
                if (line.rfind(start, 0) == 0)
                    calls.push_back(line);
            }
        }
        return calls;
    }

    KRE_Font font;
    KRE_PrintfOptions options;
};
