#pragma once

#include "tests/platform/pictures/PictureStage.h"

/// A small picture of one drawing feature.
struct PictureProgram {
    const char* name; ///< also used for the files
    void (*draw)(PictureStage& stage);
    /// How far a rasterizer may differ from the stored picture: the channel difference that is
    /// ignored, and the number of pixels with larger ones, at edges where the rules leave a choice.
    int allowedStep;
    size_t allowedPixels;
};

// Each topic has its own source file.
extern const std::vector<PictureProgram> kPrimitivePictures;
extern const std::vector<PictureProgram> kTexturePictures;
extern const std::vector<PictureProgram> kStagePictures;
extern const std::vector<PictureProgram> kVertexPictures;
extern const std::vector<PictureProgram> kOutputPictures;

/// All of them.
std::vector<PictureProgram> AllPicturePrograms();
