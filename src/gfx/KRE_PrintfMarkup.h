#pragma once

class KRE_PrintfContainer;
class KRE_PrintfLayout;

/// Lays a text out in lines and executes its commands: `|` and a letter.
///
/// | command | effect |
/// |---|---|
/// | `||` | the character itself |
/// | `|C`rrggbb, `|c`rgb | colour in hexadecimal digits, opaque |
/// | `|Z` `|L` `|T` `|J` | alignment of the line: left, centred, right, justified |
/// | `|N` | line feed |
/// | `|R` | back to the options that the text started with |
/// | `|P`ddd, `|p`dd | that many pixels to the right |
/// | `|S`xxyy, `|s`dd | scale with one decimal: 1520 is 1.5 across and 2.0 down |
/// | `|i`'name' | a picture |
///
/// Except for C, P and S, lower-case letters do the same. Anything that is not a command is text,
/// including the `|`; a command cut off by the end of the text is dropped. `container` finds the
/// pictures.
void ScanPrintfMarkup(const char* text, KRE_PrintfContainer& container, KRE_PrintfLayout& layout);
