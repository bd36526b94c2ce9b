#include <cstdlib>
#include <filesystem>
#include <random>

#include "tests/qsb/SceneFileTest.h"
#include "tests/support/HostCost.h"

namespace {

/// Loads files that are truncated or changed: each gives a sound scene or an error with a text.
class DamagedFileTest : public SceneFileTest {
protected:
    /// The step between the tried places: a sample, and a smaller one on a slow host.
    /// `QSB_ALL_BYTES=1` in the environment tries them all and is meant for a nightly run.
    static size_t Step(size_t sampled)
    {
        return std::getenv("QSB_ALL_BYTES") ? 1 : sampled * static_cast<size_t>(kHostSlowness);
    }

    /// What is wrong with the scene loaded from the bytes; empty if nothing is.
    std::string Faults(const std::string& bytes, uint32_t flags = 0)
    {
        KRE_3dScene scene;
        bool hasLoaded = false;
        const std::string error = ErrorText([&] {
            LoadBytes(scene, bytes, flags);
            hasLoaded = true;
        });
        if (!hasLoaded)
            return error.empty() ? "an error without a text\n" : "";
        std::string faults = Structural(CheckScene(scene));
        // What was loaded can be saved, and what was saved can be loaded again.
        std::filesystem::remove("saved.qsb"); // replacing it would wait for the disk
        faults += ErrorText([&] { gGfx->SaveScene(scene, "saved.qsb"); });
        KRE_3dScene again;
        faults += ErrorText([&] { gGfx->LoadScene(again, "saved.qsb", 0); });
        return faults + Structural(CheckScene(again));
    }

private:
    /// Removes what a file is allowed to contain: kinds, bounds, rotations, parent relations, and
    /// format bits of texture sets that do not exist, which one host's device meshes drop.
    static std::string Structural(const std::string& faults)
    {
        static constexpr const char* kFree[] = {"a mesh of the kind",
                                                "is outside the",
                                                "has the length",
                                                "is the object itself",
                                                "a clone with another geometry",
                                                "or the format are not the device mesh's"};
        std::string left;
        for (size_t start = 0; start < faults.size();) {
            const size_t end = faults.find('\n', start) + 1;
            const std::string line = faults.substr(start, end - start);
            bool isFree = false;
            for (const char* text : kFree)
                isFree = isFree || line.find(text) != std::string::npos;
            left += isFree ? "" : line;
            start = end;
        }
        return left;
    }
};

QsbFile RawFile()
{
    QsbFile file = FullQsb(100);
    for (QsbMesh& mesh : file.scene.meshes) {
        mesh.rawCount = static_cast<int32_t>(mesh.vertices.size());
        const size_t stride = mesh.fvf == 0x12 ? 24 : 12 + 4 + 4 + 12 + 8;
        mesh.rawVertices = std::string(stride * mesh.vertices.size(), '\0');
    }
    return file;
}

std::string BytesOf(int32_t version)
{
    return MakeQsb(version == 100 ? RawFile() : FullQsb(version)).bytes;
}

} // namespace

TEST_F(DamagedFileTest, EveryTruncationIsAnError)
{
    for (const int32_t version : {100, 103, 106}) {
        const std::string bytes = BytesOf(version);
        for (size_t size = 0; size < bytes.size(); size += Step(17))
            EXPECT_NE(LoadError(bytes.substr(0, size)), "") << version << " cut to " << size;
    }
}

TEST_F(DamagedFileTest, EveryChangedByteLoadsOrIsAnError)
{
    for (const int32_t version : {100, 101, 106}) {
        const std::string bytes = BytesOf(version);
        ASSERT_EQ(Faults(bytes), "") << version;
        for (size_t at = 3; at < bytes.size(); at += Step(31)) {
            const char old = bytes[at];
            for (const int value : {0, 255, old + 1, old - 1}) {
                std::string changed = bytes;
                changed[at] = static_cast<char>(value);
                const std::string faults = Faults(changed, at % 2 ? 0 : 8);
                EXPECT_EQ(faults, "") << version << " byte " << at << " as " << value;
                if (!faults.empty())
                    return;
            }
        }
    }
}

TEST_F(DamagedFileTest, RandomChangesLoadOrAreErrors)
{
    std::mt19937 random(20);
    const std::string bytes = BytesOf(106);
    for (size_t round = 0; round < 20000; round += Step(80)) {
        std::string changed = bytes;
        for (int i = 0; i < 5; ++i)
            changed[3 + random() % (changed.size() - 3)] = static_cast<char>(random());
        const std::string faults = Faults(changed, random() % 16);
        ASSERT_EQ(faults, "") << round;
    }
}

// ---- Large files built to be expensive

namespace {

constexpr size_t kLarge = 1 << 20;

/// As many copies of an element as fill a file of 1 MiB.
template <class T>
void Fill(std::vector<T>& list, const T& element, QsbFile& file)
{
    const size_t empty = MakeQsb(file).bytes.size();
    list.push_back(element);
    const size_t size = MakeQsb(file).bytes.size() - empty;
    list.assign((kLarge - empty) / size, element);
}

QsbObject PlainObject()
{
    QsbObject object;
    object.name = "";
    return object;
}

} // namespace

/// A file of 1 MiB costs at most 128 MiB and a moment, whatever it contains. If the cost grew with
/// the square of the file, the time limit of a test run would end it.
class LargeFileTest : public DamagedFileTest {
protected:
    void Try(const QsbFile& file, const char* what)
    {
        const std::string bytes = MakeQsb(file).bytes;
        directory.Write("scene.qsb", bytes);
        ForgetPeakMemory();
        {
            KRE_3dScene scene;
            ErrorText([&] { gGfx->LoadScene(scene, "scene.qsb", 0); });
        }
        EXPECT_LE(PeakMemoryGrowth(), int64_t{128} << 20) << what;
    }
};

TEST_F(LargeFileTest, ManySmallThingsCostAtMostASecond)
{
    QsbFile file;
    Fill(file.scene.objects, PlainObject(), file);
    Try(file, "objects without a name");
    for (QsbObject& object : file.scene.objects)
        object.parentName = "none";
    Try(file, "objects whose parent is not there");

    file = QsbFile();
    Fill(file.scene.meshes, QsbTriangle("Hull"), file);
    Try(file, "meshes of one face");

    file = QsbFile();
    file.scene.meshes = {QsbTriangle("Hull")};
    QsbMesh clone;
    clone.object.name = "c";
    clone.cloneSource = "Hull";
    Fill(file.scene.meshes, clone, file);
    file.scene.meshes[0] = QsbTriangle("Hull");
    Try(file, "clones");

    file = QsbFile();
    QsbMesh chained = clone;
    Fill(file.scene.meshes, chained, file);
    for (size_t i = 0; i < file.scene.meshes.size(); ++i) {
        file.scene.meshes[i].object.name = std::to_string(10000 + i);
        file.scene.meshes[i].cloneSource = std::to_string(10001 + i);
    }
    file.scene.meshes.back() = QsbTriangle(std::to_string(9999 + file.scene.meshes.size()));
    Try(file, "clones of clones");
}

TEST_F(LargeFileTest, ManyMaterialsAndMissingPicturesCostAtMostASecond)
{
    QsbFile file;
    file.scene.meshes = {QsbTriangle("Hull")};
    QsbMesh& mesh = file.scene.meshes[0];
    for (auto& slot : mesh.textures[0].slots)
        slot.file = "n";
    mesh.materials.assign(1500, mesh.materials[0]);
    mesh.textures.assign(1500, mesh.textures[0]);
    for (size_t i = 0; i < mesh.textures.size(); ++i)
        for (size_t slot = 0; slot < 4; ++slot)
            mesh.textures[i].slots[slot].file = std::to_string(4 * i + slot);
    Try(file, "pictures that are not there");
}

TEST_F(LargeFileTest, LongTracksCostAtMostASecond)
{
    QsbFile file;
    file.scene.objects.resize(1);
    Fill(file.scene.objects[0].posKeys, QsbVectorKey(0, {0, 0, 0}), file);
    for (size_t i = 0; i < file.scene.objects[0].posKeys.size(); i += 2)
        file.scene.objects[0].posKeys[i].time = -static_cast<float>(i);
    file.scene.objects[0].loop = 1;
    file.scene.objects[0].loopEnd = 1e-30f;
    Try(file, "keys out of order");

    file = QsbFile();
    file.scene.meshes = {QsbTriangle("Hull")};
    QsbTrack& track = file.scene.meshes[0].materials[0].opacityTrack;
    Fill(track.keys, {0, 0, 0, 0}, file);
    for (size_t i = 0; i < track.keys.size(); ++i)
        track.keys[i][0] = i % 2 ? 1e30f : -1e30f;
    track.loop = 1;
    Try(file, "opacity keys out of order");
}

TEST_F(LargeFileTest, ChainsOfParentsAndTargetsCostAtMostASecond)
{
    QsbFile file;
    QsbObject object;
    object.name = "10000";
    object.parentName = "10000";
    Fill(file.scene.objects, object, file);
    for (size_t i = 0; i < file.scene.objects.size(); ++i) {
        file.scene.objects[i].name = std::to_string(10000 + i);
        file.scene.objects[i].parentName = std::to_string(10001 + i);
    }
    Try(file, "parents");

    file = QsbFile();
    QsbCamera camera;
    camera.target.object = object;
    camera.target.targetName = "10000";
    Fill(file.scene.cameras, camera, file);
    for (size_t i = 0; i < file.scene.cameras.size(); ++i) {
        file.scene.cameras[i].target.object.name = std::to_string(10000 + i);
        file.scene.cameras[i].target.targetName = std::to_string(10001 + i);
    }
    Try(file, "targets");
}

TEST_F(LargeFileTest, FacesAndBonesCostAtMostASecond)
{
    QsbFile file;
    file.scene.meshes = {QsbTriangle("Hull")};
    QsbMesh& mesh = file.scene.meshes[0];
    mesh.materials.resize(2);
    mesh.textures.resize(2);
    Fill(mesh.faces, {0, 1, 2}, file);
    for (size_t i = 0; i < mesh.faces.size(); ++i)
        mesh.attributes.push_back(i % 2);
    Try(file, "faces");

    file = QsbFile();
    file.scene.meshes = {QsbTriangle("Hull")};
    QsbBone bone;
    bone.name = "x";
    Fill(file.scene.meshes[0].bones, bone, file);
    Try(file, "bones that are not there");
}
