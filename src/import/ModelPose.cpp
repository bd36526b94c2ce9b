#include "import/ModelPose.h"

#include <algorithm>
#include <cmath>

namespace {

/// The keys around a time and the part of the way between them.
struct Place {
    size_t from;
    size_t to;
    double ratio;
    double length;
};

Place PlaceAt(const ModelTrack& track, double seconds)
{
    const auto next = std::upper_bound(track.times.begin(), track.times.end(), seconds);
    const auto to = static_cast<size_t>(next - track.times.begin());
    if (to == 0)
        return {0, 0, 0, 0};
    if (to == track.times.size())
        return {to - 1, to - 1, 0, 0};
    const double length = track.times[to] - track.times[to - 1];
    return {to - 1, to, (seconds - track.times[to - 1]) / length, length};
}

ModelQuaternion Mixed(const ModelQuaternion& a, double fa, const ModelQuaternion& b, double fb)
{
    ModelQuaternion mixed;
    for (size_t i = 0; i < 4; ++i)
        mixed[i] = a[i] * fa + b[i] * fb;
    return mixed;
}

ModelQuaternion Spline(const ModelTrack& track, const Place& place)
{
    const double u = place.ratio;
    const double u2 = u * u;
    const double u3 = u2 * u;
    const ModelQuaternion ends = Mixed(track.values[place.from], 2 * u3 - 3 * u2 + 1,
                                       track.values[place.to], 3 * u2 - 2 * u3);
    const ModelQuaternion speeds =
        Mixed(track.leaving[place.from], place.length * (u3 - 2 * u2 + u), track.arriving[place.to],
              place.length * (u3 - u2));
    return Mixed(ends, 1, speeds, 1);
}

ModelMatrix LocalMatrix(const ModelNode& node, double seconds)
{
    const ModelVector t =
        node.positionTrack.IsEmpty() ? node.position : VectorAt(node.positionTrack, seconds);
    const ModelVector s =
        node.scaleTrack.IsEmpty() ? node.scale : VectorAt(node.scaleTrack, seconds);
    const ModelQuaternion q =
        node.rotationTrack.IsEmpty() ? node.rotation : RotationAt(node.rotationTrack, seconds);
    const double x = q[0], y = q[1], z = q[2], w = q[3];
    const double rows[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)},
                               {2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)},
                               {2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)}};
    ModelMatrix matrix = kModelIdentity;
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column)
            matrix[row * 4 + column] = rows[row][column] * s[row];
        matrix[12 + row] = t[row];
    }
    return matrix;
}

} // namespace

ModelQuaternion UnitRotation(const ModelQuaternion& q)
{
    const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    return length > 1e-12 ? Mixed(q, 1 / length, q, 0) : ModelQuaternion{0, 0, 0, 1};
}

ModelQuaternion RotationBetween(const ModelQuaternion& from, const ModelQuaternion& to, double u)
{
    const ModelQuaternion a = UnitRotation(from), b = UnitRotation(to);
    const double dot = a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
    const double sign = dot < 0 ? -1 : 1;
    const double angle = std::acos(std::min(1.0, std::fabs(dot)));
    if (angle < 1e-5)
        return UnitRotation(Mixed(a, 1 - u, b, u * sign));
    return UnitRotation(Mixed(a, std::sin(angle * (1 - u)) / std::sin(angle), b,
                              sign * std::sin(angle * u) / std::sin(angle)));
}

ModelVector VectorAt(const ModelTrack& track, double seconds)
{
    const Place place = PlaceAt(track, seconds);
    ModelQuaternion value = track.values[place.from];
    if (place.from != place.to && track.curve == ModelCurve::kLinear)
        value = Mixed(value, 1 - place.ratio, track.values[place.to], place.ratio);
    else if (place.from != place.to && track.curve == ModelCurve::kCubic)
        value = Spline(track, place);
    return {value[0], value[1], value[2]};
}

ModelQuaternion RotationAt(const ModelTrack& track, double seconds)
{
    const Place place = PlaceAt(track, seconds);
    const ModelQuaternion& value = track.values[place.from];
    if (place.from == place.to || track.curve == ModelCurve::kStep)
        return UnitRotation(value);
    if (track.curve == ModelCurve::kCubic)
        return UnitRotation(Spline(track, place));
    return RotationBetween(value, track.values[place.to], place.ratio);
}

ModelMatrix Product(const ModelMatrix& first, const ModelMatrix& second)
{
    ModelMatrix product = {};
    for (size_t row = 0; row < 4; ++row) {
        for (size_t column = 0; column < 4; ++column) {
            for (size_t i = 0; i < 4; ++i)
                product[row * 4 + column] += first[row * 4 + i] * second[i * 4 + column];
        }
    }
    return product;
}

ModelVector Moved(const ModelVector& p, const ModelMatrix& m)
{
    ModelVector moved;
    for (size_t i = 0; i < 3; ++i)
        moved[i] = p[0] * m[i] + p[1] * m[4 + i] + p[2] * m[8 + i] + m[12 + i];
    return moved;
}

double DeterminantOf(const ModelMatrix& m)
{
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
           m[2] * (m[4] * m[9] - m[5] * m[8]);
}

ModelQuaternion Product(const ModelQuaternion& a, const ModelQuaternion& b)
{
    // Hamilton's product b a: rotations are applied from the right.
    return {b[3] * a[0] + b[0] * a[3] + b[1] * a[2] - b[2] * a[1],
            b[3] * a[1] - b[0] * a[2] + b[1] * a[3] + b[2] * a[0],
            b[3] * a[2] + b[0] * a[1] - b[1] * a[0] + b[2] * a[3],
            b[3] * a[3] - b[0] * a[0] - b[1] * a[1] - b[2] * a[2]};
}

std::vector<ModelMatrix> WorldMatrices(const Model& model, double seconds)
{
    std::vector<ModelMatrix> worlds;
    for (const ModelNode& node : model.nodes) {
        const ModelMatrix local = LocalMatrix(node, seconds);
        worlds.push_back(
            node.parent < 0 ? local : Product(local, worlds[static_cast<size_t>(node.parent)]));
    }
    return worlds;
}

ModelMatrix WorldMatrix(const Model& model, int number, double seconds)
{
    ModelMatrix world = kModelIdentity;
    for (int at = number; at >= 0; at = model.nodes[static_cast<size_t>(at)].parent)
        world = Product(world, LocalMatrix(model.nodes[static_cast<size_t>(at)], seconds));
    return world;
}

double LastKeyTime(const Model& model)
{
    double last = 0;
    for (const ModelNode& node : model.nodes) {
        for (const ModelTrack* track :
             {&node.positionTrack, &node.rotationTrack, &node.scaleTrack}) {
            if (!track->IsEmpty())
                last = std::max(last, track->times.back());
        }
    }
    return last;
}
