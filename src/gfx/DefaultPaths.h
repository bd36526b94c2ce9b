#pragma once

// Where textures and effects are looked for besides the scene's own directory. Artists set these once
// in the registry; the program only reads them.

extern char gDefaultTexturePath[1024];
extern char gDefaultBasePath[1024];

/// Reads both values and hands those that are there to the engine. A missing key or value, or one of
/// more than 1023 bytes, leaves its path empty. The value's type is not looked at.
void ReadDefaultPaths();
