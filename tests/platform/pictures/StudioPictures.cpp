// Effects of the kinds that studios write, in the shading language. The system's D3DX has no compiler, so both
// hosts draw the compiled files, which this project's compiler made.

#include "tests/platform/pictures/PictureProgram.h"
#include "tests/platform/pictures/StudioStage.h"

namespace {

std::vector<PictureProgram> StudioPictures()
{
    std::vector<PictureProgram> pictures;
    for (const std::string& name : StudioEffects())
        pictures.push_back({"studio_" + name,
                            [name](PictureStage& stage) {
                                DrawStudioEffect(stage, name, StudioFile(name) + ".fxo");
                            },
                            2, PictureStage::kSide * PictureStage::kSide / 100});
    return pictures;
}

} // namespace

const std::vector<PictureProgram> kStudioPictures = StudioPictures();
