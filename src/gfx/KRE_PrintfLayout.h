#pragma once

#include <cstdint>
#include <string>

#include "base/DynaMem.h"
#include "gfx/KRE_PrintfOptions.h"
#include "gfx/PrintfLine.h"

using PrintfLines = DynaMem<PrintfLine, 256, 1>;

/// Puts one text into lines, below those that are there. Letters gather in a piece under construction
/// that takes the options of the moment it ends.
class KRE_PrintfLayout {
public:
    /// `linesIn` has to outlive the layout. `newOptions` need a font.
    KRE_PrintfLayout(PrintfLines& linesIn, const KRE_PrintfOptions& newOptions);

    /// A letter, a line feed or a tab; other control characters are left out.
    void AddCharacter(char c);
    /// Ends the piece. To be called before options change.
    void EndPiece();
    /// A picture that stands on the baseline, in its source size.
    void AddImage(KRE_Texture* image);
    /// Leaves room, in pixels.
    void MoveRight(float distance) { penX += distance; }
    /// The current line's.
    void SetAlignment(int32_t alignment);
    /// Back to the options that the text began with.
    void Reset();
    /// Ends the text and gives the rectangle of its lines. They are aligned within `width` pixels,
    /// or within the widest of them for 0.
    PrintfArea Finish(float width);

    KRE_PrintfOptions options; ///< of what follows

private:
    void BeginLine(float y);
    void EndLine();
    void NextTabStop();
    PrintfEntity& AddEntity(int32_t kind, float width);
    void IncludeHeight(float ascent, float descent);
    void IncludeFont();
    float WidthOfPiece() const;

    PrintfLines& lines;
    const KRE_PrintfOptions beginning;
    std::string piece;
    PrintfLine* line = nullptr; // not owned, lives in `lines`
    int32_t firstLine;
    float penX = 0.0f; // from the line's left end
};
