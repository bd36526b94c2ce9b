#pragma once

class KRE_PrintfContainer;
class KRE_PrintfLayout;

/// Carries a text into lines, obeying the commands in it: `|` and a letter.
///
/// | command | effect |
/// |---|---|
/// | `||` | the character itself |
/// | `|C`rrggbb, `|c`rgb | colour in hexadecimal digits, opaque |
/// | `|Z` `|L` `|T` `|J` | alignment of the line: left, centred, right, justified |
/// | `|N` | line feed |
/// | `|R` | back to the options that the text began with |
/// | `|P`ddd, `|p`dd | that many pixels to the right |
/// | `|S`xxyy, `|s`dd | scale with one decimal: 1520 is 1.5 across and 2.0 down |
/// | `|i`'name' | a picture |
///
/// But for C, P and S small letters do the same. What is no command is text, the `|` included; a
/// command that the text's end cuts off is left out. Pictures are `container`'s to find.
void ScanPrintfMarkup(const char* text, KRE_PrintfContainer& container, KRE_PrintfLayout& layout);
