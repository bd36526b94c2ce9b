#pragma once

#include "tests/platform/pictures/PictureStage.h"

/// A small picture of one feature of drawing.
struct PictureProgram {
    const char* name; ///< of the files, too
    void (*draw)(PictureStage& stage);
    /// What a rasterizer may differ in from the stored picture: steps of a channel that do not count,
    /// and pixels with larger ones, at borders where the rules leave a choice.
    int allowedStep;
    std::size_t allowedPixels;
};

// Each topic has a source file of its own.
extern const std::vector<PictureProgram> kPrimitivePictures;
extern const std::vector<PictureProgram> kTexturePictures;
extern const std::vector<PictureProgram> kStagePictures;
extern const std::vector<PictureProgram> kVertexPictures;
extern const std::vector<PictureProgram> kOutputPictures;

/// All of them.
std::vector<PictureProgram> AllPicturePrograms();
