#pragma once

#include <cstdint>
#include <string>

/// How a scene takes a picture.
struct TakenPicture {
    enum class Result { kTaken, kDamaged, kTooLarge } result = Result::kTaken;
    const char* extension = "";
    std::string png; ///< the picture in another form; empty: its own bytes stay
};

/// What a model's pictures together may make the program decode: small files can announce huge pictures.
struct PixelBudget {
    int64_t left = 12 << 20;
};

/// Looks at the bytes of a picture, whose name tells TGA from others. Kinds that scenes do not have become
/// PNG; so do PNG pictures with alpha, without it, if `dropsAlpha`. A picture beyond the budget is taken by its
/// header if scenes have its kind.
TakenPicture TakePicture(const std::string& bytes, const std::string& name, bool dropsAlpha,
                         PixelBudget& budget);
