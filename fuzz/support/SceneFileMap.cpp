#include "fuzz/support/SceneFileMap.h"

#include <cstring>

namespace {

constexpr int kLatestVersion = 106;
constexpr size_t kMostRecords = 4096;

enum Track : uint32_t { kColorTrack = 52, kFloatTrack = 16 }; // bytes of a key

/// Reads a file from its first byte to its last. After a failure nothing more is read.
class Reader {
public:
    Reader(std::string_view bytesIn, SceneFileMap& mapOut) : bytes(bytesIn), map(mapOut) {}

    void File()
    {
        version = static_cast<uint8_t>(Take(SceneFieldKind::kVersion, 1));
        if (version < 100 || version > kLatestVersion)
            isGood = false;
        Reals(3);
        Text();
        Text();
        Scene();
    }

private:
    // ---- Parts of all records

    bool Skip(size_t size)
    {
        isGood = isGood && size <= bytes.size() - at;
        at += isGood ? size : 0;
        return isGood;
    }

    uint32_t Take(SceneFieldKind kind, size_t size)
    {
        uint32_t value = 0;
        if (!Skip(size))
            return 0;
        std::memcpy(&value, bytes.data() + at - size, size);
        map.fields.push_back({kind, at - size, size});
        return value;
    }

    void Reals(size_t count)
    {
        for (size_t i = 0; i < count && isGood; ++i)
            Take(SceneFieldKind::kReal, 4);
    }
    void Wholes(size_t count)
    {
        for (size_t i = 0; i < count && isGood; ++i)
            Take(SceneFieldKind::kWhole, 4);
    }
    uint32_t Flags() { return Take(SceneFieldKind::kFlags, 1); }

    bool Text()
    {
        const auto size = static_cast<int32_t>(Take(SceneFieldKind::kTextLength, 4));
        return size > 0 && Skip(static_cast<size_t>(size));
    }

    /// `read` reads one record.
    template <class Read>
    void Records(SceneRecordKind kind, size_t countAt, size_t count, const Read& read)
    {
        for (size_t i = 0; i < count && isGood && map.records.size() < kMostRecords; ++i) {
            const size_t start = at;
            read();
            if (isGood)
                map.records.push_back({kind, countAt, start, at - start});
        }
    }

    template <class Read>
    void List(SceneRecordKind kind, const Read& read)
    {
        const size_t countAt = at;
        Records(kind, countAt, Take(SceneFieldKind::kCount, 4), read);
    }

    /// Gives the latest `count` records of a kind their other halves.
    template <class Read>
    void Twins(size_t firstRecord, SceneRecordKind kind, const Read& read)
    {
        for (size_t i = firstRecord; i < map.records.size() && isGood; ++i) {
            if (map.records[i].kind != kind)
                continue;
            const size_t start = at;
            read();
            map.records[i].twinAt = start;
            map.records[i].twinSize = isGood ? at - start : 0;
        }
    }

    // ---- Scene and objects

    void Scene()
    {
        Object();
        if (version >= 103)
            Clip();
        Wholes(2);
        if (Flags() != 0)
            Texture();
        Wholes(version >= 104 ? 17 : 16);
        List(SceneRecordKind::kMesh, [this] { Mesh(); });
        List(SceneRecordKind::kCamera, [this] {
            Target();
            Reals(1);
        });
        List(SceneRecordKind::kObject, [this] { Object(); });
        List(SceneRecordKind::kLight, [this] {
            Target();
            Wholes(3);
            Reals(25);
        });
    }

    void Object()
    {
        Take(SceneFieldKind::kReadId, 2);
        Wholes(1);
        Reals(16 + 12 + 1 + 12);
        Text();
        Text();
        Flags();
        Keys(SceneRecordKind::kPositionKey, 9);
        Keys(SceneRecordKind::kRotationKey, 21);
        Keys(SceneRecordKind::kScaleKey, 9);
        Wholes(1);
        Reals(1);
    }

    void Target()
    {
        Object();
        Text();
    }

    void Clip()
    {
        Wholes(1);
        Reals(10);
    }

    void Keys(SceneRecordKind kind, size_t reals)
    {
        const size_t countAt = at;
        if (Take(SceneFieldKind::kCount, 4) == 0)
            return;
        for (bool hasMore = true; hasMore && isGood;) {
            Records(kind, countAt, 1, [&] {
                Reals(1);
                Skip(2);
                Reals(reals);
                hasMore = Flags() != 0;
            });
            hasMore = hasMore && map.records.size() < kMostRecords;
        }
    }

    // ---- Meshes

    void Mesh()
    {
        Object();
        Clip();
        Wholes(3);
        const size_t countAt = at;
        const size_t first = map.records.size();
        const uint32_t count = Take(SceneFieldKind::kCount, 4);
        Records(SceneRecordKind::kMaterial, countAt, count, [this] { Material(); });
        Twins(first, SceneRecordKind::kMaterial, [this] { Texture(); });
        const bool isClone = Text();
        const size_t bonesAt = at;
        const uint32_t bones = Take(SceneFieldKind::kCount, 4);
        if (!isClone)
            Geometry();
        Wholes(1);
        Records(SceneRecordKind::kBoneInfo, bonesAt, bones, [this] {
            Text();
            Reals(32);
        });
    }

    void Geometry()
    {
        const size_t countAt = at;
        const uint32_t vertices = Take(SceneFieldKind::kCount, 4);
        const uint32_t faces = Take(SceneFieldKind::kCount, 4);
        const uint32_t format = Take(SceneFieldKind::kFormat, 4);
        Records(SceneRecordKind::kVertex, countAt, vertices, [&] { Vertex(format); });
        const size_t first = map.records.size();
        Records(SceneRecordKind::kFace, countAt + 4, faces, [this] {
            for (int i = 0; i < 3; ++i)
                Take(SceneFieldKind::kIndex, 2);
        });
        Twins(first, SceneRecordKind::kFace, [this] { Take(SceneFieldKind::kIndex, 2); });
    }

    void Vertex(uint32_t format)
    {
        const uint32_t position = format >> 1 & 7;
        const uint32_t weights = position >= 3 ? position - 2 : 0;
        const bool hasUV = (format >> 8 & 15) != 0;
        Reals(3);
        if (version == 100) { // as in memory
            Reals((weights > 0 ? weights - 1 : 0) + 3 + (hasUV ? 2 : 0));
            Bones(weights);
            return;
        }
        Reals(hasUV || version < 102 ? 2 : 0);
        Skip(6 + 2 * size_t{weights});
        Bones(weights);
    }

    void Bones(uint32_t weights)
    {
        for (int i = 0; i < 4 && weights > 0; ++i)
            Take(SceneFieldKind::kBone, 1);
    }

    // ---- Materials

    void Material()
    {
        Reals(17);
        Wholes(3);
        Reals(version >= 106 ? 2 : 1);
        for (int i = 0; i < 4; ++i)
            KeyTrack(kColorTrack);
        KeyTrack(kFloatTrack);
        for (int i = 0; i < 5; ++i)
            Flags();
        Wholes(1);
        if (version < 104 || !Text() || version < 105)
            return;
        for (int i = 0; i < 8 && isGood; ++i) {
            Reals(Flags() != 0 ? 1 : 0);
            Reals(Flags() != 0 ? 3 : 0);
        }
    }

    void KeyTrack(Track keyBytes)
    {
        const size_t countAt = at;
        const uint32_t count = Take(SceneFieldKind::kCount, 4);
        Wholes(1);
        Flags();
        Flags();
        Reals(1);
        Records(keyBytes == kColorTrack ? SceneRecordKind::kColorKey : SceneRecordKind::kFloatKey,
                countAt, count, [&] { Reals(keyBytes / 4); });
    }

    void Texture()
    {
        Wholes(1);
        Reals(2);
        Wholes(1);
        Reals(1);
        Wholes(1);
        for (int slot = 0; slot < (version >= 105 ? 4 : 8) && isGood; ++slot) {
            for (int i = 0; i < 5; ++i)
                KeyTrack(kFloatTrack);
            Reals(5);
            Text();
            Wholes(1);
            Reals(1);
        }
    }

    std::string_view bytes;
    SceneFileMap& map;
    size_t at = 0;
    int version = 0;
    bool isGood = true;
};

} // namespace

SceneFileMap MapSceneFile(std::string_view bytes)
{
    SceneFileMap map;
    Reader(bytes, map).File();
    return map;
}
