#pragma once

// Where textures and effects are looked for besides the scene's own directory. Artists set these once
// in the registry; the program only reads them.

extern char gDefaultTexturePath[1024];
extern char gDefaultBasePath[1024];

/// Reads both values and passes those that exist to the engine. If a key or value is missing, or has
/// more than 1023 bytes, its path stays empty. The value's type is not checked.
void ReadDefaultPaths();

/// Passes the values that were read to another engine; those that are empty are left out.
void UseDefaultPaths();
