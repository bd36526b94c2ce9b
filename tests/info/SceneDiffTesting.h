#pragma once

#include <string>
#include <vector>

#include "info/SceneDiff.h"
#include "tests/info/InfoTesting.h"

class SceneDiffTest : public InfoTest {
protected:
    /// The differences between two files.
    std::string Diff(const QsbFile& first, const QsbFile& second, const DiffOptions& options = {})
    {
        LoadedScene a;
        LoadedScene b;
        Load(a, first, "a.qsb");
        Load(b, second, "b.qsb");
        return Diff(a, b, options);
    }
    std::string Diff(LoadedScene& first, LoadedScene& second, const DiffOptions& options = {})
    {
        Output output;
        count = SceneDiff(options, output).Compare(first, second);
        return output.Text();
    }

    int64_t count = 0;
};

/// The mesh "Hull" with keys, tracks and an effect.
inline void FillHull(QsbMesh& hull)
{
    hull.object.posKeys = {QsbVectorKey(0, {1, 2, 3}), QsbVectorKey(1, {4, 5, 6})};
    hull.object.scaleKeys = {QsbVectorKey(0, {1, 1, 1})};
    hull.object.rotKeys = {QsbRotKey(0)};
    hull.materials[0].colorTracks[1].keys = {std::vector<float>(13)};
    hull.materials[0].opacityTrack.keys = {std::vector<float>(4)};
    hull.materials[0].effect = "waves.fx";
    hull.materials[0].values[2].hasFloat = true;
    hull.materials[0].values[3].hasVector = true;
    hull.textures[0].slots[1].tracks[4].keys = {std::vector<float>(4)};
    hull.textures[0].slots[3].type = 2; // pictures of bump maps are not searched for
    hull.textures[0].slots[3].file = "ripple.bmp";
}

/// A boat with some of everything: "Hull", "Skin" with bones, "Buoy", which is a clone of "Hull",
/// and "Spare" with two materials.
inline QsbFile FullBoat()
{
    QsbFile file = InfoBoat();
    FillHull(file.scene.meshes[0]);
    QsbMesh skin = InfoTriangle("Skin");
    skin.fvf = 0x1118; // two weights and bones, normal, one set
    skin.bones.resize(2);
    skin.bones[0].name = "Skin";
    skin.bones[1].name = "Arm";
    QsbMesh buoy = InfoTriangle("Buoy");
    buoy.cloneSource = "Hull";
    buoy.vertices.clear();
    buoy.faces.clear();
    QsbMesh spare = InfoTriangle("Spare");
    spare.materials.resize(2);
    spare.textures.resize(2);
    for (const QsbMesh& mesh : {skin, buoy, spare})
        file.scene.meshes.push_back(mesh);
    file.scene.backgroundTexture.resize(1);
    for (QsbObject* mover : {&file.scene.object, &file.scene.cameras[0].target.object,
                             &file.scene.objects[1], &file.scene.lights[0].target.object})
        mover->posKeys = {QsbVectorKey(0, {0, 0, 0})};
    return file;
}
