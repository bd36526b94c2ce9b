// Files that consist almost wholly of one list of the smallest records. A count is checked against the bytes that
// follow before memory is allocated; that check must accept these files.

#include "tests/qsb/SceneFileTest.h"

#include <functional>
#include <string>

#include <gmock/gmock.h>

namespace {

using ManyRecordsTest = SceneFileTest;

constexpr size_t kMany = 3000; // more than all bytes behind the list

QsbFile FileWithMaterial()
{
    QsbFile file;
    file.scene.meshes = {QsbTriangle("a")};
    file.scene.meshes[0].materials[0] = QsbMaterial();
    return file;
}

std::vector<std::vector<float>> Keys(size_t numbers)
{
    std::vector<std::vector<float>> keys(kMany, std::vector<float>(numbers));
    for (size_t i = 0; i < kMany; ++i)
        keys[i][0] = static_cast<float>(i);
    return keys;
}

} // namespace

TEST_F(ManyRecordsTest, ListsOfTheSmallestRecordsAreLoaded)
{
    QsbObject nameless;
    nameless.name = "";
    const struct {
        const char* what;
        QsbFile file;
        std::function<void(QsbFile&)> add;
    } cases[] = {
        {"cameras",
         {},
         [&](QsbFile& file) {
             file.scene.cameras.resize(kMany, {{nameless, ""}});
         }},
        {"objects", {}, [&](QsbFile& file) { file.scene.objects.resize(kMany, nameless); }},
        {"lights",
         {},
         [&](QsbFile& file) {
             file.scene.lights.resize(kMany, {{nameless, ""}});
         }},
        {"keys of an object",
         {},
         [](QsbFile& file) {
             QsbObject& object = file.scene.objects.emplace_back();
             for (size_t i = 0; i < kMany; ++i)
                 object.scaleKeys.push_back(QsbVectorKey(static_cast<float>(i), {1, 1, 1}));
         }},
        {"keys of a colour", FileWithMaterial(),
         [](QsbFile& file) { file.scene.meshes[0].materials[0].colorTracks[3].keys = Keys(13); }},
        {"keys of an opacity", FileWithMaterial(),
         [](QsbFile& file) { file.scene.meshes[0].materials[0].opacityTrack.keys = Keys(4); }},
        {"keys of a map", FileWithMaterial(),
         [](QsbFile& file) { file.scene.meshes[0].textures[0].slots[3].tracks[4].keys = Keys(4); }},
        {"materials", FileWithMaterial(),
         [](QsbFile& file) {
             QsbMesh& mesh = file.scene.meshes[0];
             mesh.materials.resize(kMany, mesh.materials[0]);
             mesh.textures.resize(kMany, QsbTexture());
         }},
    };
    for (const auto& c : cases) {
        QsbFile file = c.file;
        c.add(file);
        EXPECT_EQ(LoadError(MakeQsb(file).bytes), "") << c.what;
    }
}
