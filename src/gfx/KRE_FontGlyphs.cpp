#include "gfx/KRE_FontGlyphs.h"

// Row by row from the top, five characters each; an X is a pixel of the letter.
const char* const kFontGlyphs[kFontGlyphCount] = {
    // clang-format off
    // blank
    "     "
    "     "
    "     "
    "     "
    "     ",
    // !
    "  X  "
    "  X  "
    "  X  "
    "     "
    "  X  ",
    // "
    " X X "
    " X X "
    "     "
    "     "
    "     ",
    // #
    " X X "
    "XXXXX"
    " X X "
    "XXXXX"
    " X X ",
    // $
    " XXXX"
    "X X  "
    " XXX "
    "  X X"
    "XXXX ",
    // %
    "XX  X"
    "XX X "
    "  X  "
    " X XX"
    "X  XX",
    // &
    " XX  "
    "X  X "
    " XX  "
    "X  X "
    " XX X",
    // '
    "  X  "
    "  X  "
    "     "
    "     "
    "     ",
    // (
    "   X "
    "  X  "
    "  X  "
    "  X  "
    "   X ",
    // )
    " X   "
    "  X  "
    "  X  "
    "  X  "
    " X   ",
    // *
    "     "
    "X X X"
    " XXX "
    "X X X"
    "     ",
    // +
    "  X  "
    "  X  "
    "XXXXX"
    "  X  "
    "  X  ",
    // ,
    "     "
    "     "
    "     "
    "  X  "
    " X   ",
    // -
    "     "
    "     "
    " XXX "
    "     "
    "     ",
    // .
    "     "
    "     "
    "     "
    "     "
    "  X  ",
    // /
    "    X"
    "   X "
    "  X  "
    " X   "
    "X    ",
    // 0
    " XXX "
    "X  XX"
    "X X X"
    "XX  X"
    " XXX ",
    // 1
    "  X  "
    " XX  "
    "  X  "
    "  X  "
    " XXX ",
    // 2
    "XXXX "
    "    X"
    " XXX "
    "X    "
    "XXXXX",
    // 3
    "XXXX "
    "    X"
    " XXX "
    "    X"
    "XXXX ",
    // 4
    "X  X "
    "X  X "
    "XXXXX"
    "   X "
    "   X ",
    // 5
    "XXXXX"
    "X    "
    "XXXX "
    "    X"
    "XXXX ",
    // 6
    " XXX "
    "X    "
    "XXXX "
    "X   X"
    " XXX ",
    // 7
    "XXXXX"
    "    X"
    "   X "
    "  X  "
    "  X  ",
    // 8
    " XXX "
    "X   X"
    " XXX "
    "X   X"
    " XXX ",
    // 9
    " XXX "
    "X   X"
    " XXXX"
    "    X"
    " XXX ",
    // :
    "     "
    "  X  "
    "     "
    "  X  "
    "     ",
    // ;
    "     "
    "  X  "
    "     "
    "  X  "
    " X   ",
    // <
    "   X "
    "  X  "
    " X   "
    "  X  "
    "   X ",
    // =
    "     "
    "XXXXX"
    "     "
    "XXXXX"
    "     ",
    // >
    " X   "
    "  X  "
    "   X "
    "  X  "
    " X   ",
    // ?
    "XXXX "
    "    X"
    "  XX "
    "     "
    "  X  ",
    // @
    " XXX "
    "X X X"
    "X XXX"
    "X    "
    " XXXX",
    // A
    " XXX "
    "X   X"
    "XXXXX"
    "X   X"
    "X   X",
    // B
    "XXXX "
    "X   X"
    "XXXX "
    "X   X"
    "XXXX ",
    // C
    " XXXX"
    "X    "
    "X    "
    "X    "
    " XXXX",
    // D
    "XXXX "
    "X   X"
    "X   X"
    "X   X"
    "XXXX ",
    // E
    "XXXXX"
    "X    "
    "XXXX "
    "X    "
    "XXXXX",
    // F
    "XXXXX"
    "X    "
    "XXXX "
    "X    "
    "X    ",
    // G
    " XXXX"
    "X    "
    "X  XX"
    "X   X"
    " XXXX",
    // H
    "X   X"
    "X   X"
    "XXXXX"
    "X   X"
    "X   X",
    // I
    " XXX "
    "  X  "
    "  X  "
    "  X  "
    " XXX ",
    // J
    "  XXX"
    "    X"
    "    X"
    "X   X"
    " XXX ",
    // K
    "X   X"
    "X  X "
    "XXX  "
    "X  X "
    "X   X",
    // L
    "X    "
    "X    "
    "X    "
    "X    "
    "XXXXX",
    // M
    "X   X"
    "XX XX"
    "X X X"
    "X   X"
    "X   X",
    // N
    "X   X"
    "XX  X"
    "X X X"
    "X  XX"
    "X   X",
    // O
    " XXX "
    "X   X"
    "X   X"
    "X   X"
    " XXX ",
    // P
    "XXXX "
    "X   X"
    "XXXX "
    "X    "
    "X    ",
    // Q
    " XXX "
    "X   X"
    "X   X"
    "X  X "
    " XX X",
    // R
    "XXXX "
    "X   X"
    "XXXX "
    "X  X "
    "X   X",
    // S
    " XXXX"
    "X    "
    " XXX "
    "    X"
    "XXXX ",
    // T
    "XXXXX"
    "  X  "
    "  X  "
    "  X  "
    "  X  ",
    // U
    "X   X"
    "X   X"
    "X   X"
    "X   X"
    " XXX ",
    // V
    "X   X"
    "X   X"
    " X X "
    " X X "
    "  X  ",
    // W
    "X   X"
    "X   X"
    "X X X"
    "XX XX"
    "X   X",
    // X
    "X   X"
    " X X "
    "  X  "
    " X X "
    "X   X",
    // Y
    "X   X"
    " X X "
    "  X  "
    "  X  "
    "  X  ",
    // Z
    "XXXXX"
    "   X "
    "  X  "
    " X   "
    "XXXXX",
    // [
    " XX  "
    " X   "
    " X   "
    " X   "
    " XX  ",
    // backslash
    "X    "
    " X   "
    "  X  "
    "   X "
    "    X",
    // ]
    "  XX "
    "   X "
    "   X "
    "   X "
    "  XX ",
    // clang-format on
};
