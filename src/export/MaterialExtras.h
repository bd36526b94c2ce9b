#pragma once

#include <nlohmann/json.hpp>

class KRE_MaterialInfo;
class KRE_Texture;

/// What a material of the scene has beyond those of glTF, under the names of the scene format: colours
/// as on the screen, exponent, maps, tracks, the effect and its values.
nlohmann::json MaterialExtras(const KRE_MaterialInfo& material, const KRE_Texture& texture);
