#include "export/GltfTracks.h"

#include <algorithm>
#include <cmath>

#include "scene/HermiteWeights.h"
#include "scene/KRE_KeyEvaluation.h"
#include "scene/KRE_KeyMath.h"

namespace {

constexpr int kDeepestHalving = 10; // of a segment

/// A key with the speeds of its two sides, per second.
struct VectorKey {
    float time;
    D3DXVECTOR3 value;
    D3DXVECTOR3 arriving;
    D3DXVECTOR3 leaving;
    bool isBezier; ///< of the segment that begins here
};

bool IsFinite(const D3DXVECTOR3& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// Sets the speeds at both ends of a segment of stored keys, whose tangents are changes over it.
template <class Key>
void SetSpeeds(VectorKey& from, VectorKey& to, const Key& first, const Key& second)
{
    const float length = to.time - from.time;
    from.leaving = from.isBezier ? first.outTangent / length : (to.value - from.value) / length;
    to.arriving = from.isBezier ? -second.inTangent / length : from.leaving;
}

/// A jump is two keys of one time. glTF has no such keys, so the second one comes this much later.
float AfterJump(float time)
{
    return time + std::max(1e-6f, std::fabs(time) * 1e-6f);
}

/// The keys of a track at strictly ascending times.
template <class Key>
std::vector<VectorKey> KeysOf(const KRE_KeyList<Key>& list)
{
    std::vector<VectorKey> keys;
    const Key* before = nullptr;
    for (const Key* key = list.Head(); key; key = key->next) {
        if (!std::isfinite(key->time) || !IsFinite(key->value))
            continue;
        const bool isBezier = key->interpolation == kKeyBezier;
        const float time =
            before && key->time <= keys.back().time ? AfterJump(keys.back().time) : key->time;
        keys.push_back({time, key->value, {0, 0, 0}, {0, 0, 0}, isBezier});
        if (before)
            SetSpeeds(keys[keys.size() - 2], keys.back(), *before, *key);
        before = key;
    }
    return keys;
}

VectorKey KeyBetween(const VectorKey& from, const VectorKey& to, float time)
{
    const float length = to.time - from.time;
    const float u = (time - from.time) / length;
    const HermiteWeights h = HermiteAt(u);
    const D3DXVECTOR3 start = from.leaving * length;
    const D3DXVECTOR3 end = to.arriving * length;
    const D3DXVECTOR3 value = from.value * h.h00 + start * h.h10 + end * h.h11 + to.value * h.h01;
    const D3DXVECTOR3 speed = ((to.value - from.value) * (6 * u * (1 - u)) +
                               start * ((1 - u) * (1 - 3 * u)) + end * (u * (3 * u - 2))) /
                              length;
    return {time, value, speed, speed, from.isBezier};
}

/// Keys before second 0 become one at 0: glTF has no time before it.
void CutBeforeStart(std::vector<VectorKey>& keys)
{
    size_t first = 0;
    while (first < keys.size() && keys[first].time < 0)
        ++first;
    if (first == 0)
        return;
    VectorKey start = keys[first - 1];
    if (first < keys.size())
        start = keys[first].time == 0 ? keys[first] : KeyBetween(start, keys[first], 0);
    start.time = 0;
    const bool isThere = first < keys.size() && keys[first].time == 0;
    keys.erase(keys.begin(), keys.begin() + static_cast<ptrdiff_t>(first - (isThere ? 0 : 1)));
    keys.front() = start;
}

void Put(std::vector<float>& values, const D3DXVECTOR3& v)
{
    values.insert(values.end(), {v.x, v.y, v.z});
}

void Put(std::vector<float>& values, const D3DXQUATERNION& q)
{
    values.insert(values.end(), {q.x, q.y, q.z, q.w});
}

template <class Turn>
GltfTrack VectorTrack(std::vector<VectorKey> keys, Turn turn)
{
    CutBeforeStart(keys);
    GltfTrack track;
    const auto isBezier = [](const VectorKey& key) { return key.isBezier; };
    const bool isCubic = keys.size() > 1 && std::any_of(keys.begin(), keys.end() - 1, isBezier);
    if (isCubic)
        track.interpolation = "CUBICSPLINE";
    for (const VectorKey& key : keys) {
        track.times.push_back(key.time);
        if (isCubic)
            Put(track.values, turn(key.arriving));
        Put(track.values, turn(key.value));
        if (isCubic)
            Put(track.values, turn(key.leaving));
    }
    return track;
}

// ---- Sampling

float AngleBetween(const D3DXQUATERNION& a, const D3DXQUATERNION& b)
{
    // From the difference: the dot product has no digits left for small angles.
    const float sign = D3DXQuaternionDot(&a, &b) < 0 ? -1.0f : 1.0f;
    const D3DXQUATERNION way(a.x - sign * b.x, a.y - sign * b.y, a.z - sign * b.z,
                             a.w - sign * b.w);
    return 2 * std::sqrt(D3DXQuaternionDot(&way, &way));
}

/// Halves segments until straight ones between the samples are near enough.
class Sampler {
public:
    Sampler(const std::function<SampledPose(float)>& poseAtIn, float positionErrorIn)
        : poseAt(poseAtIn),
          positionError(positionErrorIn)
    {}

    SampledTracks Take(const std::vector<float>& marks)
    {
        for (size_t i = 0; i < marks.size(); ++i) {
            const SampledPose pose = poseAt(marks[i]);
            if (i > 0)
                Fill(times.back(), poses.back(), marks[i], pose, 0);
            Add(marks[i], pose);
        }
        return Tracks();
    }

private:
    void Add(float time, const SampledPose& pose)
    {
        times.push_back(time);
        poses.push_back(pose);
    }

    bool IsStraight(float t0, const SampledPose& from, float t1, const SampledPose& to) const
    {
        for (const float part : {0.25f, 0.5f, 0.75f}) {
            const SampledPose real = poseAt(t0 + (t1 - t0) * part);
            const D3DXVECTOR3 way =
                from.position + (to.position - from.position) * part - real.position;
            if (AngleBetween(Slerp(from.rotation, to.rotation, part), real.rotation) >
                    kSampleErrorRadians ||
                D3DXVec3Length(&way) > positionError)
                return false;
        }
        return true;
    }

    void Fill(float t0, const SampledPose from, float t1, const SampledPose& to, int depth)
    {
        const float middle = t0 + (t1 - t0) / 2;
        if (depth == kDeepestHalving || !(middle > t0 && middle < t1) ||
            IsStraight(t0, from, t1, to))
            return;
        const SampledPose pose = poseAt(middle);
        Fill(t0, from, middle, pose, depth + 1);
        Add(middle, pose);
        Fill(middle, pose, t1, to, depth + 1);
    }

    SampledTracks Tracks() const
    {
        SampledTracks tracks;
        tracks.position.times = tracks.rotation.times = times;
        for (const SampledPose& pose : poses) {
            Put(tracks.position.values, pose.position);
            Put(tracks.rotation.values, pose.rotation);
        }
        return tracks;
    }

    const std::function<SampledPose(float)>& poseAt;
    float positionError;
    std::vector<float> times;
    std::vector<SampledPose> poses;
};

/// The times of the keys from second 0 on, ascending; 0 itself if a key lies before it.
std::vector<float> MarksOf(const KRE_KeyList<KRE_RotKeyData>& keys)
{
    std::vector<float> marks;
    for (const KRE_RotKeyData* key = keys.Head(); key; key = key->next) {
        const float time = std::max(key->time, 0.0f);
        if (std::isfinite(time) && (marks.empty() || time > marks.back()))
            marks.push_back(time);
    }
    return marks;
}

} // namespace

GltfTrack PositionTrack(const KRE_ObjectFields& object)
{
    return VectorTrack(KeysOf(object.posKeys), [](const D3DXVECTOR3& v) { return ToYUp(v); });
}

GltfTrack ScaleTrack(const KRE_ObjectFields& object, NodeAxes axes)
{
    const D3DXVECTOR3 mirror = object.mirror;
    return VectorTrack(KeysOf(object.scaleKeys), [&](const D3DXVECTOR3& v) {
        return ScaleToYUp({v.x * mirror.x, v.y * mirror.y, v.z * mirror.z}, axes);
    });
}

GltfTrack RotationTrack(const KRE_ObjectFields& object, NodeAxes axes)
{
    const std::vector<float> marks = MarksOf(object.rotKeys);
    const std::function<SampledPose(float)> poseAt = [&](float time) {
        const D3DXQUATERNION rotation = EvaluateKeys(object.rotKeys, object.rotIndex, time, {});
        return SampledPose{{0, 0, 0}, ToYUp(rotation, axes)};
    };
    return Sampler(poseAt, 1).Take(marks).rotation;
}

SampledTracks SamplePose(const std::function<SampledPose(float)>& poseAt,
                         const std::vector<float>& marks, float positionError)
{
    return Sampler(poseAt, positionError).Take(marks);
}
