#pragma once

#include <cstdint>

#include "base/String.h"

// Paths as scene files carry them: `\` and `/` both separate, on every host.

/// Whether the file can be opened for reading; false for null, empty and directories.
bool FileExists(const char* path);
/// What stands in front of the last separator; empty if there is none.
void SplitDirectory(const char* path, String* directoryOut);
/// What stands behind the last separator; the whole if there is none.
void SplitLeaf(const char* path, String* leafOut);
void GetLeafName(const String& path, String* leafOut);
/// Makes `path` into `directory`, a backslash and the leaf of `path`; cut at 255 bytes.
void ReplaceDirectory(char (&path)[256], const char* directory);
/// True with a `:` anywhere or a leading separator.
bool IsAbsolutePath(const String& path);
/// Replaces what stands behind the last dot of the leaf, or adds to a leaf without a dot.
/// `extension` comes without its dot. `nameOut` may be `name`.
void ChangeExtension(const String& name, String* nameOut, const char* extension);
/// Adds a backslash unless the path is empty or ends in a separator.
void EnsureTrailingSlash(String* path);
/// Takes away the characters below 33 at the start and cuts at the first one behind them.
/// QUIRK: an inner blank cuts as well ("a b" becomes "a"), and bytes from 128 upwards count as below
/// 33. Texture catalogues rely on the cut.
void TrimString(String* text);

/// Rounds halves away from zero, in single precision. Outside int32 the nearest end of its range,
/// NaN gives 0.
int32_t RoundToInt(float value);
/// False for 0.
bool IsPowerOfTwo(uint32_t number);
/// The lowest power of two at or above `number`; 0 for 0, and 0 above 2^31, where there is none.
uint32_t NextPowerOfTwo(uint32_t number);
