#include "platform/headless/d3d9/Clip.h"

#include <cmath>

namespace headless {

namespace {

/// The smallest w in front of the eye: keeps everything visible, yet is large enough to divide by.
constexpr float kLeastW = 1e-6f;

constexpr DWORD kEye = 1, kLeft = 2, kRight = 4, kTop = 8, kBottom = 16, kNear = 32, kFar = 64;
constexpr int kFixedPlanes = 7;
constexpr int kPlaneCount = kFixedPlanes + static_cast<int>(kClipPlaneCount);

/// Signed distance from a plane, inside at 0 and above; linear in the vertex.
float Distance(const ClipRules& rules, const ShadedVertex& vertex, int plane)
{
    const float* p = vertex.clip;
    switch (DWORD{1} << plane) {
    case kEye:
        return p[3] - kLeastW;
    case kLeft:
        return rules.guardX * p[3] + p[0];
    case kRight:
        return rules.guardX * p[3] - p[0];
    case kTop:
        return rules.guardY * p[3] - p[1];
    case kBottom:
        return rules.guardY * p[3] + p[1];
    case kNear:
        return p[2];
    case kFar:
        return p[3] - p[2];
    default:
        return vertex.planeDistance[plane - kFixedPlanes];
    }
}

ShadedVertex Mix(const ClipRules& rules, const ShadedVertex& a, const ShadedVertex& b, float share)
{
    ShadedVertex mixed = a;
    for (int i = 0; i < rules.varyingCount; ++i)
        mixed.varying[i] = a.varying[i] + (b.varying[i] - a.varying[i]) * share;
    for (int i = 0; i < 4; ++i)
        mixed.clip[i] = a.clip[i] + (b.clip[i] - a.clip[i]) * share;
    if (rules.planes != 0)
        for (UINT i = 0; i < kClipPlaneCount; ++i)
            mixed.planeDistance[i] =
                a.planeDistance[i] + (b.planeDistance[i] - a.planeDistance[i]) * share;
    return mixed;
}

/// The intersection of an edge and a plane, measured from the inside end, so that two triangles
/// sharing the edge get the same point whichever way they traverse it.
ShadedVertex Crossing(const ClipRules& rules, const ShadedVertex& inside, float insideDistance,
                      const ShadedVertex& outside, float outsideDistance)
{
    return Mix(rules, inside, outside, insideDistance / (insideDistance - outsideDistance));
}

int ClipAgainst(const ClipRules& rules, int plane, const ShadedVertex* in, int count,
                ShadedVertex* out)
{
    int left = 0;
    for (int i = 0; i < count; ++i) {
        const ShadedVertex& a = in[i];
        const ShadedVertex& b = in[(i + 1) % count];
        const float da = Distance(rules, a, plane);
        const float db = Distance(rules, b, plane);
        if (da >= 0.0f)
            out[left++] = a;
        if (da >= 0.0f && !(db >= 0.0f))
            out[left++] = Crossing(rules, a, da, b, db);
        else if (db >= 0.0f && !(da >= 0.0f))
            out[left++] = Crossing(rules, b, db, a, da);
        if (left > kMaxClippedCorners - 2) // only rounding can make a polygon non-convex
            break;
    }
    return left;
}

} // namespace

DWORD ClipCode(const ClipRules& rules, const ShadedVertex& vertex)
{
    DWORD code = 0;
    for (int plane = 0; plane < kFixedPlanes; ++plane) {
        const DWORD bit = DWORD{1} << plane;
        if ((bit & (kNear | kFar)) != 0 && !rules.clipsDepth)
            continue;
        if (!(Distance(rules, vertex, plane) >= 0.0f))
            code |= bit;
    }
    for (int plane = kFixedPlanes; rules.planes != 0 && plane < kPlaneCount; ++plane)
        if ((rules.planes >> (plane - kFixedPlanes) & 1) != 0 &&
            !(Distance(rules, vertex, plane) >= 0.0f))
            code |= DWORD{1} << plane;
    return code;
}

bool IsFinite(const ShadedVertex& vertex)
{
    // Testing one sum is enough: infinity and NaN both survive it.
    return std::isfinite(std::fabs(vertex.clip[0]) + std::fabs(vertex.clip[1]) +
                         std::fabs(vertex.clip[2]) + std::fabs(vertex.clip[3]));
}

int ClipPolygon(const ClipRules& rules, DWORD codes, ShadedVertex (&corners)[kMaxClippedCorners],
                int count)
{
    ShadedVertex other[kMaxClippedCorners];
    ShadedVertex* from = corners;
    ShadedVertex* to = other;
    for (int plane = 0; plane < kPlaneCount && count >= 3; ++plane) {
        if ((codes >> plane & 1) == 0)
            continue;
        count = ClipAgainst(rules, plane, from, count, to);
        ShadedVertex* last = from;
        from = to;
        to = last;
    }
    if (from != corners)
        for (int i = 0; i < count; ++i)
            corners[i] = from[i];
    return count >= 3 ? count : 0;
}

bool ClipLine(const ClipRules& rules, DWORD codes, ShadedVertex& a, ShadedVertex& b)
{
    for (int plane = 0; plane < kPlaneCount; ++plane) {
        if ((codes >> plane & 1) == 0)
            continue;
        const float da = Distance(rules, a, plane);
        const float db = Distance(rules, b, plane);
        if (!(da >= 0.0f) && !(db >= 0.0f))
            return false;
        if (!(db >= 0.0f))
            b = Crossing(rules, a, da, b, db);
        else if (!(da >= 0.0f))
            a = Crossing(rules, b, db, a, da);
    }
    return true;
}

} // namespace headless
