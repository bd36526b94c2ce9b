#pragma once

#include "base/String.h"
#include "scene/KRE_EffectParams.h"

/// The value of `key` in a text of the form `key = 'value'`, with optional blanks and tabs around
/// the equals sign. An unclosed value runs to the end of the text. Empty if the first occurrence of
/// `key` is not followed by that form.
String GetNameAttribute(const char* text, const char* key);

/// Reads the effect and its parameters from a material's name: `shader`, `fParam1` to `fParam8`
/// with a number, `vParam1` to `vParam8` with three numbers separated by commas.
void ParseEffectAttributes(const char* text, KRE_EffectParams* paramsOut);
