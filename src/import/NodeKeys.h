#pragma once

#include <functional>

#include "import/QsaScene.h"
#include "import/SceneSpace.h"

/// How far sampled tracks may be from the model's between two keys.
inline constexpr double kSampledAngle = 2e-5;   ///< radians
inline constexpr double kSampledStretch = 1e-5; ///< of the largest part of a vector

/// How tracks that a scene cannot have are sampled, and what is left to spend: times in a small file can be years
/// apart.
struct Sampling {
    double framesPerSecond = 30;
    size_t left = 0; ///< looks at a node, for the whole scene

    /// Throws ModelFault if less is left.
    void Spend(size_t looks);
};

/// Tracks of a node in the scene's space. Steps become two keys of one time. Positions keep their splines;
/// other splines are sampled, at the frame rate and finer where a straight line is not near enough.
QsaVectorTrack PositionKeys(const ModelTrack& track, const SceneSpace& space);
QsaVectorTrack ScaleKeys(const ModelTrack& track, const SceneSpace& space, Sampling& sampling);
/// `before` is applied before each rotation, `after` behind it.
std::vector<QsaRotationKey> RotationKeys(const ModelTrack& track, const SceneSpace& space,
                                         Sampling& sampling, const ModelQuaternion& before,
                                         const ModelQuaternion& after);

/// The times at which a function has to be known so that straight lines between them are near enough. `looks` are
/// those of asking once.
std::vector<double> SampleTimes(const std::vector<double>& marks, Sampling& sampling, size_t looks,
                                const std::function<bool(double, double)>& isStraight);
/// Whether the rotation halfway is that of the shortest way.
bool IsNearRotation(const ModelQuaternion& from, const ModelQuaternion& to, double ratio,
                    const ModelQuaternion& real);
