#include "scene/CopyBudget.h"

template <class Track>
static int64_t KeyBytes(const Track& track)
{
    return track.GetKeyCount() > 0 ? track.GetKeyCount() * int64_t{sizeof track.Key(0)} : 0;
}

int64_t AnimationBytes(const KRE_MaterialInfo& material)
{
    return KeyBytes(material.diffuseTrack) + KeyBytes(material.ambientTrack) +
           KeyBytes(material.specularTrack) + KeyBytes(material.selfIllumTrack) +
           KeyBytes(material.opacityTrack);
}

int64_t AnimationBytes(const KRE_Texture& texture)
{
    constexpr int64_t kFrameBytes = sizeof texture.frames[0] + sizeof texture.frameIds[0];
    int64_t bytes = texture.sequenceCount * kFrameBytes;
    for (int32_t slot = 0; texture.matrixAni && slot < KRE_Texture::kSlots; ++slot) {
        bytes += sizeof texture.matrixAni[slot];
        for (const KRE_FloatTrack& track : texture.matrixAni[slot].tracks)
            bytes += KeyBytes(track);
    }
    return bytes;
}
