#include "gfx/KRE_PrintfLayout.h"

#include <algorithm>
#include <cmath>

#include "gfx/KRE_Font.h"
#include "gfx/KRE_Texture.h"

namespace {

int32_t CountBlanks(const PrintfEntity& entity)
{
    const char* text = entity.text.c_str();
    return static_cast<int32_t>(std::count(text, text + entity.length, ' '));
}

/// Widens the spaces of a line to make it `room` pixels longer.
void Spread(PrintfLine& line, float room)
{
    int32_t blanks = 0;
    for (const PrintfEntity* entity : line.entities)
        blanks += CountBlanks(*entity);
    if (blanks == 0)
        return;
    const float share = room / static_cast<float>(blanks);
    float shift = 0.0f;
    for (PrintfEntity* entity : line.entities) {
        entity->x += shift;
        entity->wordSpacing = share;
        const float growth = share * static_cast<float>(CountBlanks(*entity));
        entity->width += growth;
        shift += growth;
    }
    line.width += room;
}

void Align(PrintfLine& line, float width, bool isLast)
{
    const float room = std::max(width - line.width, 0.0f);
    switch (line.alignment) {
    case kAlignCentred:
        line.x = room / 2.0f;
        break;
    case kAlignRight:
        line.x = room;
        break;
    case kAlignJustified:
        if (!isLast)
            Spread(line, room);
        break;
    default:
        break;
    }
}

} // namespace

KRE_PrintfLayout::KRE_PrintfLayout(PrintfLines& linesIn, const KRE_PrintfOptions& newOptions)
    : options(newOptions),
      lines(linesIn),
      beginning(newOptions),
      firstLine(linesIn.Count())
{
    BeginLine(firstLine > 0 ? lines.Get(firstLine - 1)->Bottom() : 0.0f);
}

void KRE_PrintfLayout::BeginLine(float y)
{
    line = &lines.Added(lines.Add());
    line->y = y;
    line->alignment = options.alignment;
    penX = 0.0f;
}

void KRE_PrintfLayout::EndLine()
{
    EndPiece();
    if (line->entities.Count() == 0)
        IncludeFont();
}

void KRE_PrintfLayout::AddCharacter(char c)
{
    if (c == '\n') {
        EndLine();
        BeginLine(line->Bottom());
    } else if (c == '\t' && options.tab > 0.0f) {
        NextTabStop();
    } else if (c == '\t') {
        piece += ' ';
    } else if (static_cast<uint8_t>(c) >= KRE_Font::kFirstGlyph) {
        piece += c;
    }
}

void KRE_PrintfLayout::NextTabStop()
{
    EndPiece();
    penX = (std::floor(penX / options.tab) + 1.0f) * options.tab;
}

void KRE_PrintfLayout::EndPiece()
{
    if (piece.empty())
        return;
    PrintfEntity& entity = AddEntity(PrintfEntity::kText, WidthOfPiece());
    entity.length = static_cast<int32_t>(piece.size());
    entity.text.Assign(piece.data(), entity.length);
    piece.clear();
    IncludeFont();
}

float KRE_PrintfLayout::WidthOfPiece() const
{
    float width = 0.0f;
    for (char c : piece)
        width += options.font->CharWidth(static_cast<uint8_t>(c)) * options.scaleX;
    return width;
}

void KRE_PrintfLayout::AddImage(KRE_Texture* image)
{
    EndPiece();
    PrintfEntity& entity = AddEntity(PrintfEntity::kImage, image->sourceWidth * options.scaleX);
    entity.image = image;
    IncludeHeight(image->sourceHeight * options.scaleY, 0.0f);
}

PrintfEntity& KRE_PrintfLayout::AddEntity(int32_t kind, float width)
{
    PrintfEntity& entity = line->entities.Added(line->entities.Add());
    entity.kind = kind;
    entity.x = penX;
    entity.width = width;
    entity.options = options;
    penX += width;
    line->width = std::max(line->width, penX);
    return entity;
}

void KRE_PrintfLayout::IncludeHeight(float ascent, float descent)
{
    line->ascent = std::max(line->ascent, ascent);
    line->descent = std::max(line->descent, descent);
}

void KRE_PrintfLayout::IncludeFont()
{
    const KRE_Font& font = *options.font;
    const float ascent = font.lineSpacingFactor * font.GlyphHeight() * options.scaleY;
    IncludeHeight(ascent, font.LineHeight() * options.scaleY - ascent);
}

void KRE_PrintfLayout::SetAlignment(int32_t alignment)
{
    options.alignment = alignment;
    line->alignment = alignment;
}

void KRE_PrintfLayout::Reset()
{
    options = beginning;
    line->alignment = beginning.alignment;
}

PrintfArea KRE_PrintfLayout::Finish(float width)
{
    EndLine();
    if (width <= 0.0f) {
        width = 0.0f;
        for (int32_t i = firstLine; i < lines.Count(); ++i)
            width = std::max(width, lines.Get(i)->width);
    }
    PrintfArea area{width, lines.Get(firstLine)->y, 0.0f, line->Bottom()};
    for (int32_t i = firstLine; i < lines.Count(); ++i) {
        PrintfLine& aligned = *lines.Get(i);
        Align(aligned, width, &aligned == line);
        area.left = std::min(area.left, aligned.x);
        area.right = std::max(area.right, aligned.x + aligned.width);
    }
    return area;
}
