// Any picture of a model: it is damaged, too large, kept as it is, or becomes a PNG picture.

#include <cstdint>
#include <cstdlib>

#include "fuzz/support/Mutation.h"
#include "import/PictureKinds.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    PixelBudget budget{1 << 16};
    const std::string bytes(TextOf(data + 1, size - 1));
    const TakenPicture taken =
        TakePicture(bytes, (data[0] & 2) != 0 ? "a.tga" : "a", (data[0] & 1) != 0, budget);
    const bool isTaken = taken.result == TakenPicture::Result::kTaken;
    if (isTaken != (taken.extension[0] != 0) || (!isTaken && !taken.png.empty()))
        std::abort();
    return 0;
}
