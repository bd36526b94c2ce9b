#pragma once

// The program's own view of its command line. The line is split at the blank character only: tabs
// are ordinary characters, runs of blanks count once.
// QUIRK: quotes do not hold a token together, so an option-looking word inside a quoted path counts
// as that option; only CmdGetFileName reads through the blanks of a quoted name.
// All comparisons fold the letters a to z; lines and names are zero-terminated byte strings.

/// Size of the buffer that CmdGetFileName writes to, the terminator included.
inline constexpr int kFileNameSize = 256;

int CmdCountTokens(const char* commandLine);

/// The start of token `index` (from 0) in the line, or null. The token ends at the next blank.
const char* CmdGetToken(int index, const char* commandLine);

/// 1 if a whole token equals `name`.
int CmdHasSwitch(const char* commandLine, const char* name);

/// Reads `/name:v` or `/name=v`. 1 if a value was stored; `out` is untouched otherwise.
/// Only the first token that begins with `name` is looked at, so `/test` hides a `/t:5` behind it.
/// An empty value stores 0.
/// QUIRK: characters are not checked to be digits, and only the last ten of them count, so a bad
/// number gives nonsense and no error. Lengths are taken modulo 256.
int CmdGetInt(const char* commandLine, const char* name, int* out);

/// The same for a number in the C notation, whose first 31 characters count; trailing text is
/// ignored.
int CmdGetFloat(const char* commandLine, const char* name, float* out);

/// Index of the n-th token (from 1) that is no option: its first character is above blank as a
/// signed byte and is not `/`. -1 if there is none.
int CmdFindFileToken(const char* commandLine, int n);

/// Copies that token to `out`, which holds kFileNameSize bytes, and gives its index or -1.
/// A name that starts with a double quote reaches to the next one, blanks included, or to the end of
/// the line; any other ends at the first character at or below blank or at a double quote.
int CmdGetFileName(const char* commandLine, int n, char* out);
