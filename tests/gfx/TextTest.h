#pragma once

#include "gfx/KRE_Font.h"
#include "tests/gfx/EngineTest.h"

/// One drawn character: its place on the screen and on the sheet.
struct GlyphQuad {
    float left, top, right, bottom; // screen pixels
    float u, v, uEnd, vEnd;         // of the sheet, 0 to 1
    D3DCOLOR color;
};

/// An engine over recorded calls with the engine's own font at scale 1: letters of 5 x 5 pixels, 6
/// apart horizontally and vertically (5 plus a spacing of 1).
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

    /// The first `count` quads in the vertex list.
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

    /// Lays a text out with `options`, replacing all lines.
    PrintfArea Lay(const char* text)
    {
        gfx.printf.Clear();
        gfx.printf.PushOptions(options);
        const PrintfArea area = gfx.printf.AddText(text);
        gfx.printf.PopOptions();
        return area;
    }

    /// The drawing and view calls, without stages, blending and transforms.
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
