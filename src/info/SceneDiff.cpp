#include "info/SceneDiff.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "info/FieldLister.h"
#include "info/NameText.h"
#include "info/SceneFields.h"

// ---- Values

/// Two NaNs are the same, as are equal infinities.
bool SceneDiff::IsSame(const Field& first, const Field& second, int32_t i) const
{
    const double a = first.numbers[static_cast<size_t>(i)];
    const double b = second.numbers[static_cast<size_t>(i)];
    if (a == b || (std::isnan(a) && std::isnan(b)))
        return true;
    const bool isExact = first.IsWhole() || first.kind == FieldKind::kBits;
    const double tolerance = options.tolerance.value_or(first.step);
    return !isExact && std::fabs(a - b) <= tolerance && std::isfinite(a) && std::isfinite(b);
}

void SceneDiff::Tell(const std::string& path, const std::string& first, const std::string& second)
{
    ++differences;
    if (linesLeft-- > 0)
        output.Line({path, ": ", first, " | ", second});
}

void SceneDiff::CompareFields(const std::string& path, const Field& first, const Field& second)
{
    if (first.kind == FieldKind::kText) {
        if (first.text != second.text)
            Tell(path, first.PartText(0), second.PartText(0));
        return;
    }
    const int32_t both = std::min(first.count, second.count);
    for (int32_t i = 0; i < std::max(first.count, second.count); ++i) {
        if (i >= both)
            Tell(path + (i < first.count ? first : second).PartName(i),
                 i < first.count ? first.PartText(i) : "-",
                 i < second.count ? second.PartText(i) : "-");
        else if (!IsSame(first, second, i))
            Tell(path + first.PartName(i), first.PartText(i), second.PartText(i));
    }
}

static std::string WholeText(const Field& field)
{
    return field.IsList() ? "present" : field.PartText(0);
}

/// Fields that only one side has come from differing layouts and effects.
void SceneDiff::CompareFieldLists(const std::string& path)
{
    const auto& all = firstFields.All();
    for (size_t i = 0; i < all.size(); ++i) {
        // Nearly always both sides have the same fields in the same order.
        const Field* other = i < secondFields.All().size() ? &secondFields.All()[i] : nullptr;
        if (!other || other->name != all[i].name)
            other = secondFields.Find(all[i].name);
        if (other)
            CompareFields(path + all[i].name, all[i], *other);
        else
            Tell(path + all[i].name, WholeText(all[i]), "-");
    }
    for (const Field& field : secondFields.All()) {
        if (!firstFields.Find(field.name))
            Tell(path + field.name, "-", WholeText(field));
    }
}

// ---- Records and arrays

template <class Record>
void SceneDiff::CompareRecords(const std::string& path, const Record& first, const Record& second)
{
    firstFields.Clear();
    secondFields.Clear();
    AddFields(first, firstFields);
    AddFields(second, secondFields);
    CompareFieldLists(path);
}

template <class Add>
void SceneDiff::CompareArray(const std::string& path, int64_t count, Add add)
{
    linesLeft = options.all ? INT64_MAX : kMostLines;
    for (int64_t i = 0; i < count; ++i) {
        firstFields.Clear();
        secondFields.Clear();
        add(false, i, firstFields);
        add(true, i, secondFields);
        CompareFieldLists(path + '[' + std::to_string(i) + "].");
    }
    if (linesLeft < 0)
        output.Line({path, ": ", CountOf(-linesLeft, "difference", "differences"), " more"});
    linesLeft = INT64_MAX;
}

template <class Key>
void SceneDiff::CompareKeyList(const std::string& path, const KRE_KeyList<Key>& first,
                               const KRE_KeyList<Key>& second)
{
    const Key* keys[] = {first.Head(), second.Head()};
    int64_t count = 0; // the objects' counters are compared with their other fields
    for (const Key *a = keys[0], *b = keys[1]; a && b; a = a->next, b = b->next)
        ++count;
    CompareArray(path, count, [&keys](bool isSecond, int64_t, FieldList& fields) {
        const Key*& key = keys[isSecond ? 1 : 0];
        AddFields(*key, fields);
        key = key->next;
    });
}

template <class Track>
void SceneDiff::CompareTrack(const std::string& path, const Track& first, const Track& second)
{
    CompareRecords(path + '.', first, second);
    const int32_t count = std::min(first.GetKeyCount(), second.GetKeyCount());
    CompareArray(path + ".keys", count, [&](bool isSecond, int64_t i, FieldList& fields) {
        AddFields((isSecond ? second : first).Key(static_cast<int32_t>(i)), fields);
    });
}

void SceneDiff::CompareTracks(const std::string& path, const std::vector<NamedTrack>& first,
                              const std::vector<NamedTrack>& second)
{
    for (size_t i = 0; i < first.size(); ++i) {
        const auto compare = [&](const auto* track) {
            CompareTrack(path + first[i].name, *track, *std::get<decltype(track)>(second[i].track));
        };
        std::visit(compare, first[i].track);
    }
}

// ---- Parts of objects

void SceneDiff::CompareKeys(const std::string& path, const KRE_3dObject& first,
                            const KRE_3dObject& second)
{
    CompareKeyList(path + "posKeys", first.posKeys, second.posKeys);
    CompareKeyList(path + "rotKeys", first.rotKeys, second.rotKeys);
    CompareKeyList(path + "scaleKeys", first.scaleKeys, second.scaleKeys);
}

void SceneDiff::CompareMaterials(const std::string& path, const KRE_MaterialInfo& first,
                                 const KRE_MaterialInfo& second)
{
    CompareRecords(path + '.', first, second);
    CompareTracks(path + '.', TracksOf(first), TracksOf(second));
}

void SceneDiff::CompareTextures(const std::string& path, const KRE_Texture& first,
                                const KRE_Texture& second)
{
    CompareRecords(path + '.', first, second);
    for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot) {
        const std::string slotPath = path + ".slots[" + std::to_string(slot) + "].";
        firstFields.Clear();
        secondFields.Clear();
        AddSlotFields(first, slot, firstFields);
        AddSlotFields(second, slot, secondFields);
        CompareFieldLists(slotPath);
        CompareTracks(slotPath, TracksOf(AnimationOf(first, slot)),
                      TracksOf(AnimationOf(second, slot)));
    }
}

void SceneDiff::CompareGeometry(const std::string& path, KRE_Mesh& first, KRE_Mesh& second)
{
    const bool isStored = first.cloneSource.IsEmpty() || second.cloneSource.IsEmpty();
    if (!isStored || !first.mesh || !second.mesh)
        return;
    first.LockAll(D3DLOCK_READONLY);
    second.LockAll(D3DLOCK_READONLY);
    CompareArray(path + "vertices", std::min(first.vertexCount, second.vertexCount),
                 [&](bool isSecond, int64_t i, FieldList& fields) {
                     AddVertexFields(isSecond ? second : first, static_cast<int32_t>(i), fields);
                 });
    CompareArray(path + "faces", std::min(first.faceCount, second.faceCount),
                 [&](bool isSecond, int64_t i, FieldList& fields) {
                     AddFaceFields(isSecond ? second : first, static_cast<int32_t>(i), fields);
                 });
    second.UnlockAll();
    first.UnlockAll();
}

void SceneDiff::CompareMeshes(const std::string& path, KRE_Mesh& first, KRE_Mesh& second)
{
    CompareRecords(path, first, second);
    CompareKeys(path, first, second);
    const int32_t materials = std::min(first.materialCount, second.materialCount);
    const std::string material = path + "materials[";
    const std::string texture = path + "textures[";
    for (int32_t i = 0; i < materials; ++i) {
        const std::string place = std::to_string(i) + ']';
        CompareMaterials(material + place, first.materials[i], second.materials[i]);
        CompareTextures(texture + place, first.textures[i], second.textures[i]);
    }
    CompareArray(path + "bones", std::min(first.bones.Count(), second.bones.Count()),
                 [&](bool isSecond, int64_t i, FieldList& fields) {
                     AddFields(*(isSecond ? second : first).bones.Get(static_cast<int32_t>(i)),
                               fields);
                 });
    CompareGeometry(path, first, second);
}

// ---- Lists of objects

namespace {

/// The objects of one list by name; objects of the same name in list order.
template <class List>
auto ByName(List& list)
{
    using Object = std::remove_reference_t<decltype(**list.begin())>;
    std::map<std::string, std::vector<Object*>> objects;
    for (Object* object : list)
        objects[object->name.c_str()].push_back(object);
    return objects;
}

std::string PathOf(const char* listName, const std::string& name, size_t place)
{
    std::string path = std::string(listName) + '/' + ShownName(name);
    return place > 0 ? path + '#' + std::to_string(place + 1) : path;
}

/// The names of a list in list order.
template <class List>
std::vector<const char*> NamesOf(List& list)
{
    std::vector<const char*> names;
    for (const auto* object : list)
        names.push_back(object->name.c_str());
    return names;
}

} // namespace

template <class List, class ComparePair>
void SceneDiff::CompareLists(const char* listName, List& first, List& second,
                             ComparePair comparePair)
{
    const auto firstByName = ByName(first);
    const auto secondByName = ByName(second);
    bool areAllPaired = first.Count() == second.Count();
    std::map<std::string, size_t> met;
    for (auto* object : first) {
        const std::string name = object->name.c_str();
        const size_t place = met[name]++;
        const std::string path = PathOf(listName, name, place);
        const auto others = secondByName.find(name);
        if (others != secondByName.end() && place < others->second.size()) {
            comparePair(path + '/', *object, *others->second[place]);
            continue;
        }
        Tell(path, "present", "-");
        areAllPaired = false;
    }
    met.clear();
    for (auto* object : second) {
        const std::string name = object->name.c_str();
        const size_t place = met[name]++;
        const auto others = firstByName.find(name);
        if (others == firstByName.end() || place >= others->second.size())
            Tell(PathOf(listName, name, place), "-", "present");
    }
    if (!areAllPaired)
        return;
    // All are there: their order is one more thing that a file stores.
    const std::vector<const char*> names[] = {NamesOf(first), NamesOf(second)};
    CompareArray(std::string(listName) + "/order", first.Count(),
                 [&names](bool isSecond, int64_t i, FieldList& fields) {
                     fields.Text("name", names[isSecond ? 1 : 0][static_cast<size_t>(i)]);
                 });
}

int64_t SceneDiff::Compare(LoadedScene& firstFile, LoadedScene& secondFile)
{
    KRE_3dScene& first = firstFile.scene;
    KRE_3dScene& second = secondFile.scene;
    CompareRecords("header/", firstFile.header, secondFile.header);
    CompareRecords("scene/", first, second);
    CompareKeys("scene/", first, second);
    CompareRecords("settings/", first.settings, second.settings);
    CompareTextures("background", first.backgroundTexture, second.backgroundTexture);
    CompareLists(
        "meshes", first.meshes, second.meshes,
        [this](const std::string& path, KRE_Mesh& a, KRE_Mesh& b) { CompareMeshes(path, a, b); });
    CompareLists("cameras", first.cameras, second.cameras,
                 [this](const std::string& path, KRE_Camera& a, KRE_Camera& b) {
                     CompareRecords(path, a, b);
                     CompareKeys(path, a, b);
                 });
    CompareLists("objects", first.objects, second.objects,
                 [this](const std::string& path, KRE_3dObject& a, KRE_3dObject& b) {
                     CompareRecords(path, a, b);
                     CompareKeys(path, a, b);
                 });
    CompareLists("lights", first.lights, second.lights,
                 [this](const std::string& path, KRE_Light& a, KRE_Light& b) {
                     CompareRecords(path, a, b);
                     CompareKeys(path, a, b);
                 });
    return differences;
}
