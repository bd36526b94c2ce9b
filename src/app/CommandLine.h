#pragma once

// Reads the command line. It is split only at blanks: tabs are ordinary characters, and consecutive
// blanks count as one.
// QUIRK: quotes do not keep a token together, so a word inside a quoted path that looks like an option
// counts as that option; only CmdGetFileName reads past the blanks of a quoted name.
// All comparisons fold the letters a to z; lines and names are zero-terminated byte strings.

/// Size of the buffer that CmdGetFileName writes to, the terminator included.
inline constexpr int kFileNameSize = 256;

int CmdCountTokens(const char* commandLine);

/// The start of token `index` (from 0) in the line, or null. The token ends at the next blank.
const char* CmdGetToken(int index, const char* commandLine);

/// 1 if a whole token equals `name`.
int CmdHasSwitch(const char* commandLine, const char* name);

/// Reads `/name:v` or `/name=v`. 1 if a value was stored; `out` is untouched otherwise.
/// Only the first token that begins with `name` is read, so `/test` hides a `/t:5` after it.
/// An empty value stores 0.
/// QUIRK: characters are not checked to be digits, and only the last ten of them are used, so a bad
/// number gives a meaningless value and no error. Lengths are taken modulo 256.
int CmdGetInt(const char* commandLine, const char* name, int* out);

/// The same for a number in C notation; only its first 31 characters are used, trailing text is
/// ignored.
int CmdGetFloat(const char* commandLine, const char* name, float* out);

/// Index of the n-th token (from 1) that is not an option: its first character is above blank as a
/// signed byte and is not `/`. -1 if there is none.
int CmdFindFileToken(const char* commandLine, int n);

/// Copies that token to `out`, which holds kFileNameSize bytes, and gives its index or -1.
/// A name that starts with a double quote reaches to the next one, blanks included, or to the end of
/// the line; any other ends at the first character at or below blank or at a double quote.
int CmdGetFileName(const char* commandLine, int n, char* out);
