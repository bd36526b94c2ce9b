#pragma once

#include <string>
#include <string_view>

/// Whether the bytes of a file are a compiled effect (fx_2_0), sound or not.
bool IsCompiledEffect(std::string_view bytes);

/// The text of a compiled effect: its parameters, and each pass with its states, computations and shaders.
/// Returns why there is none, naming the file by `name`; "" if there is one.
std::string ListEffect(const std::string& name, std::string_view bytes, std::string& listingOut);
