#pragma once

#include <string>

/// The compiled form (fx_2_0) of an effect's text, which the system's D3DX loads. Returns why there is none,
/// with file, line and column where the text is at fault; "" if there is one. Files that the text includes
/// are looked for beside it.
std::string CompileEffect(const std::string& path, std::string& compiledOut);
