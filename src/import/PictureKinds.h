#pragma once

#include <string>

/// How scenes take a picture.
enum class PictureKind { kReadable, kConvertible, kDamaged };

struct PictureFacts {
    PictureKind kind = PictureKind::kDamaged;
    const char* extension = ""; ///< of a readable one
};

/// Looks at the bytes of a picture; those of usual size are decoded.
PictureFacts InspectPicture(const std::string& bytes);

/// The picture as PNG, without its alpha if `dropsAlpha`; empty if it cannot be decoded.
std::string PngOfPicture(const std::string& bytes, bool dropsAlpha);
/// Whether the picture has an alpha channel that is not 255 everywhere.
bool HasAlphaPixels(const std::string& bytes);
