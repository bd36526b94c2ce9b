#include "import/WriteQsa.h"

#include "import/QsaWriter.h"
#include "import/SceneNames.h"

namespace {

constexpr int kFormatVersion = 211;
constexpr int kTicksPerFrame = 160;
constexpr size_t kMostFileName = 120;

} // namespace

std::string QsaWriter::Write()
{
    text.Line("*3DSMAX_QSAEXPORT").AddWhole(kFormatVersion);
    WriteScene();
    WriteMaterials();
    if (model.scene.fog) {
        text.Open("*ATMOSPHERIC");
        text.Open("*STDFOG");
        text.Line("*FOG_COLOR").AddVector(*model.scene.fog);
        text.Close();
        text.Close();
    }
    for (const QsaNode& node : scene.nodes)
        WriteNode(node);
    WriteBounds();
    return text.Text();
}

void QsaWriter::WriteScene()
{
    const ModelVector dark = {0.3, 0.3, 0.3};
    text.Open("*SCENE");
    text.Line("*SCENE_BACKGROUND_STATIC").AddVector(model.scene.background.value_or(dark));
    text.Line("*SCENE_AMBIENT_STATIC").AddVector(model.scene.ambient.value_or(dark));
    text.Line("*SCENE_FIRSTFRAME").AddWhole(0);
    text.Line("*SCENE_LASTFRAME").AddWhole(scene.lastFrame);
    text.Line("*SCENE_FRAMESPEED").Add(scene.framesPerSecond);
    text.Line("*SCENE_TICKSPERFRAME").AddWhole(kTicksPerFrame);
    const int background = model.scene.backgroundImage;
    if (background >= 0 && !pictures[static_cast<size_t>(background)].empty()) {
        text.Open("*SCENE_ENVMAP");
        text.Line("*BITMAP").AddText(pictures[static_cast<size_t>(background)]);
        text.Close();
    }
    if (!model.scene.soundFile.empty())
        text.Line("*SCENE_SOUNDFILE").AddText(HarmlessText(model.scene.soundFile, kMostFileName));
    if (!model.scene.scriptFile.empty())
        text.Line("*SCENE_SCRIPTFILE").AddText(HarmlessText(model.scene.scriptFile, kMostFileName));
    text.Close();
}

/// Rounded to float first: the product of a tick has a rounding of its own.
double QsaWriter::Ticks(double seconds) const
{
    return seconds * scene.framesPerSecond * kTicksPerFrame;
}

/// A box of the scene's extent; the converter takes it out again.
void QsaWriter::WriteBounds()
{
    if (!scene.bounds)
        return;
    static constexpr int kFaces[12][3] = {{0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6},
                                          {0, 1, 4}, {1, 5, 4}, {2, 6, 3}, {3, 6, 7},
                                          {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    MeshPiece box;
    for (int corner = 0; corner < 8; ++corner) {
        ModelPoint& point = box.vertices.emplace_back();
        for (size_t axis = 0; axis < 3; ++axis)
            point[axis] = static_cast<float>((*scene.bounds)[corner >> axis & 1][axis]);
    }
    for (const auto& corners : kFaces) {
        MeshPiece::Face& face = box.faces.emplace_back();
        face.group = 1;
        face.material = 0;
        for (size_t c = 0; c < 3; ++c)
            face.vertex[c] = static_cast<uint32_t>(corners[c]);
    }
    QsaNode node;
    node.kind = QsaKind::kMesh;
    node.name = "Bounds";
    node.piece = &box;
    WriteNode(node);
}

std::string WriteQsa(const QsaScene& scene, const Model& model,
                     const std::vector<std::string>& pictures)
{
    return QsaWriter(scene, model, pictures).Write();
}
