#include "import/NodeKeys.h"

#include <algorithm>
#include <cmath>

#include "gltf/ModelFault.h"
#include "import/ModelPose.h"

namespace {

constexpr int kDeepestHalving = 5;    // of a frame
constexpr double kMostFrames = 20000; // of a track; frames of longer ones are longer

ModelVector VectorOf(const ModelQuaternion& value)
{
    return {value[0], value[1], value[2]};
}

void Halve(double from, double to, int depth, const std::function<bool(double, double)>& isStraight,
           std::vector<double>& timesOut)
{
    const double middle = (from + to) / 2;
    if (depth < kDeepestHalving && !isStraight(from, to)) {
        Halve(from, middle, depth + 1, isStraight, timesOut);
        timesOut.push_back(middle);
        Halve(middle, to, depth + 1, isStraight, timesOut);
    }
}

bool IsNearVector(const ModelVector& from, const ModelVector& to, double ratio,
                  const ModelVector& real)
{
    double size = 1e-6;
    double way = 0;
    for (size_t i = 0; i < 3; ++i) {
        size = std::max(size, std::fabs(real[i]));
        way = std::max(way, std::fabs(from[i] + (to[i] - from[i]) * ratio - real[i]));
    }
    return way <= kSampledStretch * size;
}

/// Passes each key's time and place to `add`, the value of a step twice.
template <class Add>
void ForEachKey(const ModelTrack& track, const Add& add)
{
    for (size_t i = 0; i < track.times.size(); ++i) {
        if (track.curve == ModelCurve::kStep && i > 0)
            add(track.times[i], i - 1);
        add(track.times[i], i);
    }
}

} // namespace

void Sampling::Spend(size_t looks)
{
    if (left < looks)
        throw ModelFault("its animations take too many samples");
    left -= looks;
}

std::vector<double> SampleTimes(const std::vector<double>& marks, Sampling& sampling, size_t looks,
                                const std::function<bool(double, double)>& isStraight)
{
    const auto look = [&](double from, double to) {
        sampling.Spend(looks);
        return isStraight(from, to);
    };
    const double whole = marks.empty() ? 0 : marks.back() - marks.front();
    const double rate = std::min(sampling.framesPerSecond, kMostFrames / std::max(whole, 1e-9));
    std::vector<double> times;
    for (size_t i = 0; i < marks.size(); ++i) {
        if (i > 0) {
            const double length = marks[i] - marks[i - 1];
            const double frames = std::ceil(length * rate - 1e-6);
            const auto steps = static_cast<size_t>(std::clamp(frames, 1.0, kMostFrames));
            double before = marks[i - 1];
            for (size_t step = 1; step <= steps; ++step) {
                const double at = step == steps
                                      ? marks[i]
                                      : marks[i - 1] + length * static_cast<double>(step) /
                                                           static_cast<double>(steps);
                Halve(before, at, 0, look, times);
                if (step < steps)
                    times.push_back(at);
                before = at;
            }
        }
        times.push_back(marks[i]);
    }
    return times;
}

bool IsNearRotation(const ModelQuaternion& from, const ModelQuaternion& to, double ratio,
                    const ModelQuaternion& real)
{
    const ModelQuaternion at = RotationBetween(from, to, ratio);
    double dot = 0;
    double way = 0;
    for (size_t i = 0; i < 4; ++i)
        dot += at[i] * real[i];
    for (size_t i = 0; i < 4; ++i)
        way += (at[i] - (dot < 0 ? -real[i] : real[i])) * (at[i] - (dot < 0 ? -real[i] : real[i]));
    return 2 * std::sqrt(way) <= kSampledAngle;
}

QsaVectorTrack PositionKeys(const ModelTrack& track, const SceneSpace& space)
{
    QsaVectorTrack made;
    made.isBezier = track.curve == ModelCurve::kCubic;
    ForEachKey(track, [&](double time, size_t i) {
        QsaVectorKey& key = made.keys.emplace_back();
        key = {time, space.Position(VectorOf(track.values[i])), {}, {}};
        if (made.isBezier) {
            key.arriving = space.Position(VectorOf(track.arriving[i]));
            key.leaving = space.Position(VectorOf(track.leaving[i]));
        }
    });
    return made;
}

QsaVectorTrack ScaleKeys(const ModelTrack& track, const SceneSpace& space, Sampling& sampling)
{
    QsaVectorTrack made;
    const auto add = [&](double time, const ModelVector& scale) {
        ModelVector turned = space.Scale(scale);
        for (double& part : turned)
            part = std::fabs(part);
        made.keys.push_back({time, turned, {}, {}});
    };
    if (track.curve != ModelCurve::kCubic) {
        ForEachKey(track, [&](double time, size_t i) { add(time, VectorOf(track.values[i])); });
        return made;
    }
    const auto isStraight = [&](double from, double to) {
        const ModelVector first = VectorAt(track, from);
        const ModelVector last = VectorAt(track, to);
        for (const double part : {0.25, 0.5, 0.75}) {
            if (!IsNearVector(first, last, part, VectorAt(track, from + (to - from) * part)))
                return false;
        }
        return true;
    };
    for (const double time : SampleTimes(track.times, sampling, 1, isStraight))
        add(time, VectorAt(track, time));
    return made;
}

std::vector<QsaRotationKey> RotationKeys(const ModelTrack& track, const SceneSpace& space,
                                         Sampling& sampling, const ModelQuaternion& before,
                                         const ModelQuaternion& after)
{
    std::vector<QsaRotationKey> keys;
    const auto add = [&](double time, const ModelQuaternion& rotation) {
        keys.push_back({time, Product(Product(before, space.Rotation(rotation)), after)});
    };
    if (track.curve != ModelCurve::kCubic) {
        ForEachKey(track, [&](double time, size_t i) { add(time, UnitRotation(track.values[i])); });
        return keys;
    }
    const auto isStraight = [&](double from, double to) {
        const ModelQuaternion first = RotationAt(track, from);
        const ModelQuaternion last = RotationAt(track, to);
        for (const double part : {0.25, 0.5, 0.75}) {
            if (!IsNearRotation(first, last, part, RotationAt(track, from + (to - from) * part)))
                return false;
        }
        return true;
    };
    for (const double time : SampleTimes(track.times, sampling, 1, isStraight))
        add(time, RotationAt(track, time));
    return keys;
}
