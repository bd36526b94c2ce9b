#pragma once

#include <cstdint>
#include <string>

#include "base/DynaMem.h"
#include "gfx/KRE_PrintfOptions.h"
#include "gfx/PrintfLine.h"

using PrintfLines = DynaMem<PrintfLine, 256, 1>;

/// Lays one text out in lines, below the existing ones. Letters collect in a piece under
/// construction, which takes the options in force when it ends.
class KRE_PrintfLayout {
public:
    /// `linesIn` must outlive the layout. `newOptions` need a font.
    KRE_PrintfLayout(PrintfLines& linesIn, const KRE_PrintfOptions& newOptions);

    /// Adds a letter, a line feed or a tab; other control characters are ignored.
    void AddCharacter(char c);
    /// Ends the piece. Call it before options change.
    void EndPiece();
    /// Adds a picture on the baseline, in its source size.
    void AddImage(KRE_Texture* image);
    /// Leaves a gap, in pixels.
    void MoveRight(float distance) { penX += distance; }
    /// Sets the alignment of the current line.
    void SetAlignment(int32_t alignment);
    /// Restores the options that the text started with.
    void Reset();
    /// Ends the text and returns the rectangle of its lines. They are aligned within `width`
    /// pixels, or within the widest line if it is 0.
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
