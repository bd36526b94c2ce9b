#pragma once

#include "tests/platform/pictures/PictureStage.h"

#include <string>

/// A small picture of one drawing feature.
struct PictureProgram {
    std::string name; ///< also used for the files
    std::function<void(PictureStage& stage)> draw;
    /// How far a rasterizer may differ from the stored picture: the channel difference that is
    /// ignored, and the number of pixels with larger ones, at edges where the rules leave a choice.
    int allowedStep;
    size_t allowedPixels;
    /// Draws on a device that others of its kind have drawn on, since making one takes half a second under
    /// Wine. It sets every state that it depends on, or leaves as it was.
    bool sharesStage = false;
};

// Each topic has its own source file.
extern const std::vector<PictureProgram> kPrimitivePictures;
extern const std::vector<PictureProgram> kTexturePictures;
extern const std::vector<PictureProgram> kStagePictures;
extern const std::vector<PictureProgram> kVertexPictures;
extern const std::vector<PictureProgram> kOutputPictures;
extern const std::vector<PictureProgram> kArithmeticPictures;
extern const std::vector<PictureProgram> kOldPixelPictures;
extern const std::vector<PictureProgram> kFlowPictures;
extern const std::vector<PictureProgram> kShaderRulePictures;
extern const std::vector<PictureProgram> kSolidPictures;
extern const std::vector<PictureProgram> kStudioPictures;

/// All of them.
std::vector<PictureProgram> AllPicturePrograms();
