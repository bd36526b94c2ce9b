#include "import/NodeKeys.h"

#include <algorithm>
#include <cmath>

#include "import/ModelPose.h"

namespace {

constexpr int kDeepestHalving = 5;    // of a frame
constexpr size_t kMostFrames = 20000; // of one segment

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

std::vector<double> SampleTimes(const std::vector<double>& marks, double framesPerSecond,
                                const std::function<bool(double, double)>& isStraight)
{
    std::vector<double> times;
    for (size_t i = 0; i < marks.size(); ++i) {
        if (i > 0) {
            const double length = marks[i] - marks[i - 1];
            const double frames = std::ceil(length * framesPerSecond - 1e-6);
            const size_t steps =
                static_cast<size_t>(std::clamp(frames, 1.0, static_cast<double>(kMostFrames)));
            double before = marks[i - 1];
            for (size_t step = 1; step <= steps; ++step) {
                const double at = step == steps
                                      ? marks[i]
                                      : marks[i - 1] + length * static_cast<double>(step) /
                                                           static_cast<double>(steps);
                Halve(before, at, 0, isStraight, times);
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
    ModelTrack track;
    track.times = {0, 1};
    track.values = {from, to};
    const ModelQuaternion at = RotationAt(track, ratio);
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

QsaVectorTrack ScaleKeys(const ModelTrack& track, const SceneSpace& space, double framesPerSecond)
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
        for (const double part : {0.25, 0.5, 0.75}) {
            if (!IsNearVector(VectorAt(track, from), VectorAt(track, to), part,
                              VectorAt(track, from + (to - from) * part)))
                return false;
        }
        return true;
    };
    for (const double time : SampleTimes(track.times, framesPerSecond, isStraight))
        add(time, VectorAt(track, time));
    return made;
}

std::vector<QsaRotationKey> RotationKeys(const ModelTrack& track, const SceneSpace& space,
                                         double framesPerSecond, const ModelQuaternion& before,
                                         const ModelQuaternion& after)
{
    std::vector<QsaRotationKey> keys;
    const auto add = [&](double time, const ModelQuaternion& rotation) {
        keys.push_back({time, Product(Product(before, space.Rotation(rotation)), after)});
    };
    if (track.curve != ModelCurve::kCubic) {
        ForEachKey(track, [&](double time, size_t i) {
            ModelTrack single;
            single.times = {0};
            single.values = {track.values[i]};
            add(time, RotationAt(single, 0));
        });
        return keys;
    }
    const auto isStraight = [&](double from, double to) {
        for (const double part : {0.25, 0.5, 0.75}) {
            if (!IsNearRotation(RotationAt(track, from), RotationAt(track, to), part,
                                RotationAt(track, from + (to - from) * part)))
                return false;
        }
        return true;
    };
    for (const double time : SampleTimes(track.times, framesPerSecond, isStraight))
        add(time, RotationAt(track, time));
    return keys;
}
