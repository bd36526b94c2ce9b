#pragma once

#include <functional>
#include <vector>

#include "export/GltfSpace.h"
#include "scene/KRE_ObjectFields.h"

/// One animated property of a node as glTF has it.
struct GltfTrack {
    const char* interpolation = "LINEAR"; ///< or "CUBICSPLINE": three values for each time
    std::vector<float> times;             ///< seconds, from 0 on, strictly ascending
    std::vector<float> values;

    bool IsEmpty() const { return times.empty(); }
};

/// Sampled rotations differ from the scene's by at most this angle, halfway between two keys as well.
inline constexpr float kSampleErrorRadians = 1e-4f;

/// The tracks of an object; keys before second 0 are replaced by one at 0. Positions and scales are exact,
/// and so are rotations without TCB keys; those are sampled. `time < 0` never occurs in the result.
GltfTrack PositionTrack(const KRE_ObjectFields& object);
GltfTrack ScaleTrack(const KRE_ObjectFields& object, NodeAxes axes);
GltfTrack RotationTrack(const KRE_ObjectFields& object, NodeAxes axes);

/// A pose that is known at any time, sampled between the given times within `kSampleErrorRadians` and
/// `positionError`. One track each for the two parts.
struct SampledPose {
    D3DXVECTOR3 position;
    D3DXQUATERNION rotation;
};
struct SampledTracks {
    GltfTrack position;
    GltfTrack rotation;
};
SampledTracks SamplePose(const std::function<SampledPose(float)>& poseAt,
                         const std::vector<float>& marks, float positionError);
