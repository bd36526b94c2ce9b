#pragma once

#include <cstdint>

#include "base/String.h"

// Paths as scene files store them: `\` and `/` both separate, on every host.

/// Whether the file can be opened for reading; false for null, empty and directories.
bool FileExists(const char* path);
/// The part before the last separator; empty if there is none.
void SplitDirectory(const char* path, String* directoryOut);
/// The part after the last separator; the whole path if there is none.
void SplitLeaf(const char* path, String* leafOut);
void GetLeafName(const String& path, String* leafOut);
/// Sets `path` to `directory`, a backslash and the leaf of `path`; truncated to 255 bytes.
void ReplaceDirectory(char (&path)[256], const char* directory);
/// True with a `:` anywhere or a leading separator.
bool IsAbsolutePath(const String& path);
/// Replaces the text after the last dot of the leaf, or adds an extension to a leaf without a dot.
/// `extension` has no dot. `nameOut` may be `name`.
void ChangeExtension(const String& name, String* nameOut, const char* extension);
/// Adds a backslash unless the path is empty or ends in a separator.
void EnsureTrailingSlash(String* path);
/// Removes the characters below 33 at the start and truncates at the next one.
/// QUIRK: an inner blank truncates as well ("a b" becomes "a"), and bytes from 128 up count as below
/// 33. Texture catalogues rely on it.
void TrimString(String* text);

/// Rounds halves away from zero, in single precision. Outside int32 the nearest end of its range,
/// NaN gives 0.
int32_t RoundToInt(float value);
/// False for 0.
bool IsPowerOfTwo(uint32_t number);
/// The lowest power of two at or above `number`; 0 for 0, and 0 above 2^31, where there is none.
uint32_t NextPowerOfTwo(uint32_t number);
