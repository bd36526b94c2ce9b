#include <algorithm>
#include <cmath>
#include <numbers>

#include "import/GltfReader.h"
#include "import/QsaWriter.h"
#include "import/RotationChain.h"

namespace {

const char* HeadOf(QsaKind kind)
{
    switch (kind) {
    case QsaKind::kMesh:
    case QsaKind::kClone:
        return "*GEOMOBJECT";
    case QsaKind::kCamera:
        return "*CAMERAOBJECT";
    case QsaKind::kLight:
        return "*LIGHTOBJECT";
    case QsaKind::kBone:
        return "*BONEOBJECT";
    default:
        return "*HELPEROBJECT";
    }
}

/// The rows of a rotation matrix.
std::array<ModelVector, 3> RowsOf(const ModelQuaternion& q)
{
    const double x = q[0], y = q[1], z = q[2], w = q[3];
    return {{{1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)},
             {2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)},
             {2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)}}};
}

constexpr const char* const kRows[] = {"*TM_ROW0", "*TM_ROW1", "*TM_ROW2"};

const char* LightWord(ModelLightKind kind)
{
    switch (kind) {
    case ModelLightKind::kSpot:
        return "TargetSpot";
    case ModelLightKind::kDirectional:
        return "Directional";
    default:
        return "Omni";
    }
}

} // namespace

void QsaWriter::WriteNode(const QsaNode& node)
{
    text.Open(HeadOf(node.kind));
    text.Line("*NODE_NAME").AddText(node.name);
    if (!node.parent.empty())
        text.Line("*NODE_PARENT").AddText(node.parent);
    WriteTransform("*NODE_TM", node);
    if (node.kind == QsaKind::kMesh || node.kind == QsaKind::kClone) {
        text.Line("*NODE_VISIBLE").AddWhole(node.isVisible ? 1 : 0);
        if (node.kind == QsaKind::kClone)
            text.Line("*CLONE").AddText(node.source);
        else
            WriteMesh(node);
        if (node.material >= 0)
            text.Line("*MATERIAL_REF").AddWhole(node.material);
        text.Line("*WIREFRAME_COLOR").AddVector(ModelVector{1, 1, 1});
    }
    if (node.kind == QsaKind::kCamera) {
        text.Open("*CAMERA_SETTINGS");
        text.Line("*CAMERA_FOV").Add(node.cameraAngle);
        text.Close();
    }
    if (node.kind == QsaKind::kLight)
        WriteLight(node);
    WriteAnimation(node);
    text.Close();
}

void QsaWriter::WriteTransform(const char* keyword, const QsaNode& node)
{
    const RotationChain::Step step = WrittenRotation(node.rotation);
    const std::array<ModelVector, 3> rows = RowsOf(node.rotation);
    text.Open(keyword);
    for (size_t row = 0; row < 3; ++row) {
        const double sign = node.mirrored == static_cast<int>(row) ? -1 : 1;
        text.Line(kRows[row]);
        for (const double part : rows[row])
            text.Add(part * node.scale[row] * sign);
    }
    text.Line("*TM_ROW3").AddVector(node.position);
    text.Line("*TM_POS").AddVector(node.position);
    text.Line("*TM_ROTAXIS").AddVector(step.axis);
    text.Line("*TM_ROTANGLE").Add(step.angle);
    text.Line("*TM_SCALE").AddVector(node.scale);
    text.Close();
}

/// A matrix of which only the rows count; the parts are as near to it as they can be.
void QsaWriter::WriteMatrix(const char* keyword, const ModelMatrix& matrix)
{
    ModelVector position, scale;
    ModelQuaternion rotation;
    bool sheared = false;
    SplitMatrix(matrix, position, rotation, scale, sheared);
    const RotationChain::Step step = WrittenRotation(rotation);
    text.Open(keyword);
    for (size_t row = 0; row < 3; ++row)
        text.Line(kRows[row])
            .AddVector(ModelVector{matrix[row * 4], matrix[row * 4 + 1], matrix[row * 4 + 2]});
    text.Line("*TM_ROW3").AddVector(position);
    text.Line("*TM_POS").AddVector(position);
    text.Line("*TM_ROTAXIS").AddVector(step.axis);
    text.Line("*TM_ROTANGLE").Add(step.angle);
    text.Line("*TM_SCALE")
        .AddVector(ModelVector{std::fabs(scale[0]), std::fabs(scale[1]), std::fabs(scale[2])});
    text.Close();
}

void QsaWriter::WriteAnimation(const QsaNode& node)
{
    if (node.positions.keys.empty() && node.rotations.empty() && node.scales.keys.empty())
        return;
    text.Open("*TM_ANIMATION");
    text.Line("*NODE_NAME").AddText(node.name);
    WriteVectorTrack(node.positions.isBezier ? "*CONTROL_POS_BEZIER" : "*CONTROL_POS_TRACK",
                     "*CONTROL_POS_SAMPLE", "*CONTROL_BEZIER_POS_KEY", node.positions);
    if (!node.rotations.empty()) {
        RotationChain chain;
        text.Open("*CONTROL_ROT_TRACK");
        for (const QsaRotationKey& key : node.rotations) {
            const RotationChain::Step step = chain.Next(key.value);
            text.Line("*CONTROL_ROT_SAMPLE").Add(Ticks(key.seconds));
            text.AddVector(step.axis).Add(step.angle);
        }
        text.Close();
    }
    WriteVectorTrack("*CONTROL_SCALE_TRACK", "*CONTROL_SCALE_SAMPLE", "", node.scales);
    text.Close();
}

/// Tangents are changes for a tick; the arriving one looks back.
void QsaWriter::WriteVectorTrack(const char* block, const char* sample, const char* bezier,
                                 const QsaVectorTrack& track)
{
    if (track.keys.empty())
        return;
    const double perTick = 1 / Ticks(1);
    text.Open(block);
    for (const QsaVectorKey& key : track.keys) {
        text.Line(track.isBezier ? bezier : sample).Add(Ticks(key.seconds)).AddVector(key.value);
        for (size_t axis = 0; track.isBezier && axis < 3; ++axis)
            text.Add(-key.arriving[axis] * perTick);
        for (size_t axis = 0; track.isBezier && axis < 3; ++axis)
            text.Add(key.leaving[axis] * perTick);
    }
    text.Close();
}

void QsaWriter::WriteLight(const QsaNode& node)
{
    constexpr double kDegrees = 180 / std::numbers::pi;
    const ModelLight& light = node.light;
    text.Line("*LIGHT_TYPE").AddPlain(LightWord(light.kind));
    text.Line("*LIGHT_USELIGHT").AddWhole(light.isOn ? 1 : 0);
    text.Open("*LIGHT_SETTINGS");
    text.Line("*LIGHT_COLOR").AddVector(light.color);
    text.Line("*LIGHT_INTENS").Add(light.strength.value_or(1));
    text.Line("*LIGHT_ASPECT").AddWhole(1);
    if (light.kind == ModelLightKind::kSpot) {
        text.Line("*LIGHT_HOTSPOT").Add(2 * light.inner * kDegrees);
        text.Line("*LIGHT_FALLOFF").Add(2 * light.outer * kDegrees);
    }
    text.Close();
}
