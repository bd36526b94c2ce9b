#include "fuzz/support/SceneFileMutator.h"

#include <algorithm>
#include <cstring>

#include "fuzz/support/Dice.h"
#include "fuzz/support/SceneFileMap.h"

namespace {

constexpr float kReals[] = {0.0f,   1.0f,
                            -1.0f,  0.5f,
                            1e-30f, 3e38f,
                            -3e38f, 1e10f,
                            3.14f,  0.0001f,
                            100.f,  -0.0f,
                            2.0f,   __builtin_inff(),
                            -8.f,   __builtin_nanf("")};
constexpr int32_t kWholes[] = {0,  1,  2, 3,  4,   5,     6,         7,
                               -1, -2, 8, 32, 100, 65536, INT32_MAX, INT32_MIN};
constexpr int32_t kCounts[] = {0, 1, 2, -1, 65535, 65536, 0x10000000, INT32_MAX, INT32_MIN};
constexpr const char* kTexts[] = {"",       "a",    "b",        "a.ppm",  "b.tga",
                                  "c.ifl",  "d.fx", "none.png", "Bounds", "x\\a.ppm",
                                  "/a.ppm", "A",    "a mirror", "\xFF\n"};
/// Positions without and with weights, normals and texture coordinates; some are refused.
constexpr uint32_t kFormats[] = {0x12,   0x112,  0x212,  0x1016, 0x1018,  0x101A,  0x111C,
                                 0x1118, 0x111A, 0x11E,  0x52,   0x40212, 0x10112, 0x30112,
                                 0x2,    0x14,   0x8118, 0x32,   0xD2,    0x812,   0x913};

uint32_t WordAt(const std::string& bytes, size_t at)
{
    uint32_t word = 0;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    return word;
}

void PutBytes(std::string& bytes, size_t at, const void* value, size_t size)
{
    std::memcpy(bytes.data() + at, value, size);
}

void AddToCount(std::string& bytes, size_t countAt, int32_t added)
{
    const uint32_t count = WordAt(bytes, countAt) + static_cast<uint32_t>(added);
    PutBytes(bytes, countAt, &count, sizeof count);
}

/// Texts come with their lengths, so that what follows stays in step.
void ChangeText(std::string& bytes, const SceneFileMap& map, const SceneField& field, Dice& dice)
{
    std::string text = dice.Pick(kTexts);
    const SceneField& other = dice.Pick(map.fields);
    const uint32_t otherSize =
        other.kind == SceneFieldKind::kTextLength ? WordAt(bytes, other.at) : 0;
    if (otherSize > 0 && otherSize <= bytes.size() - other.at - 4)
        text = bytes.substr(other.at + 4, otherSize);
    const auto size = static_cast<int32_t>(WordAt(bytes, field.at));
    const auto length = static_cast<uint32_t>(text.size());
    std::string stored(reinterpret_cast<const char*>(&length), sizeof length);
    stored += text;
    bytes.replace(field.at, 4 + static_cast<size_t>(std::max(size, 0)), stored);
}

void ChangeNumber(std::string& bytes, const SceneField& field, Dice& dice)
{
    const size_t size = std::min<size_t>(field.size, 4);
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + field.at, size);
    switch (field.kind) {
    case SceneFieldKind::kReal:
        std::memcpy(&value, &dice.Pick(kReals), sizeof value);
        break;
    case SceneFieldKind::kFormat:
        value = dice.OneIn(4) ? value ^ 1u << dice.Below(20) : dice.Pick(kFormats);
        break;
    case SceneFieldKind::kVersion:
        value = static_cast<uint32_t>(99 + dice.Below(9));
        break;
    case SceneFieldKind::kCount:
    case SceneFieldKind::kTextLength:
        value = dice.OneIn(2) ? value + 1 : static_cast<uint32_t>(dice.Pick(kCounts));
        break;
    case SceneFieldKind::kIndex:
    case SceneFieldKind::kBone:
    case SceneFieldKind::kFlags:
        value = dice.OneIn(8) ? dice.Bits() : static_cast<uint32_t>(dice.Below(6));
        break;
    default:
        value = static_cast<uint32_t>(dice.Pick(kWholes));
        break;
    }
    PutBytes(bytes, field.at, &value, size);
}

/// Counts and versions that do not fit end the load early, so they are changed less often.
void ChangeField(std::string& bytes, Dice& dice)
{
    const SceneFileMap map = MapSceneFile(bytes);
    for (int tries = 0; tries < 4 && !map.fields.empty(); ++tries) {
        const SceneField& field = dice.Pick(map.fields);
        const bool isRisky = field.kind == SceneFieldKind::kCount ||
                             field.kind == SceneFieldKind::kVersion ||
                             field.kind == SceneFieldKind::kReadId;
        const bool isText = field.kind == SceneFieldKind::kTextLength;
        if (isRisky && !dice.OneIn(4))
            continue;
        if (isText && !dice.OneIn(12))
            ChangeText(bytes, map, field, dice);
        else
            ChangeNumber(bytes, field, dice);
        return;
    }
}

/// Fields of four bytes that say what kind of thing something is decide more than its numbers.
void ChangeMode(std::string& bytes, Dice& dice)
{
    const SceneFileMap map = MapSceneFile(bytes);
    for (int tries = 0; tries < 40 && !map.fields.empty(); ++tries) {
        const SceneField& field = dice.Pick(map.fields);
        if (field.kind == SceneFieldKind::kReal)
            continue;
        if (field.kind == SceneFieldKind::kTextLength)
            ChangeText(bytes, map, field, dice);
        else
            ChangeNumber(bytes, field, dice);
        return;
    }
}

bool IsChainKey(SceneRecordKind kind)
{
    return kind == SceneRecordKind::kPositionKey || kind == SceneRecordKind::kRotationKey ||
           kind == SceneRecordKind::kScaleKey;
}

/// Puts a record before `place`. The record of a chain says that another one follows.
void InsertRecord(std::string& bytes, const SceneRecord& place, std::string record,
                  const std::string& twin)
{
    if (IsChainKey(place.kind))
        record.back() = 1;
    if (place.twinSize > 0)
        bytes.insert(place.twinAt, twin);
    bytes.insert(place.at, record);
    AddToCount(bytes, place.countAt, 1);
}

void RepeatRecord(std::string& bytes, Dice& dice)
{
    const SceneFileMap map = MapSceneFile(bytes);
    if (map.records.empty())
        return;
    const SceneRecord& record = dice.Pick(map.records);
    InsertRecord(bytes, record, bytes.substr(record.at, record.size),
                 bytes.substr(record.twinAt, record.twinSize));
}

/// The last one of a chain stays: the one before it would have to say that none follows.
void RemoveRecord(std::string& bytes, Dice& dice)
{
    const SceneFileMap map = MapSceneFile(bytes);
    if (map.records.empty())
        return;
    const SceneRecord& record = dice.Pick(map.records);
    if (IsChainKey(record.kind) && bytes[record.at + record.size - 1] == 0)
        return;
    if (record.twinSize > 0)
        bytes.erase(record.twinAt, record.twinSize);
    bytes.erase(record.at, record.size);
    AddToCount(bytes, record.countAt, -1);
}

/// The last byte selects the flags of the load.
void ChangeFlags(std::string& bytes, Dice& dice)
{
    bytes += static_cast<char>(dice.Below(16));
}

void CutEnd(std::string& bytes, Dice& dice)
{
    bytes.resize(dice.Below(bytes.size() + 1));
}

constexpr void (*kFileSteps[])(std::string&, Dice&) = {
    ChangeField, ChangeField,  ChangeField,  ChangeMode,   ChangeMode,   ChangeMode,  ChangeMode,
    ChangeMode,  RepeatRecord, RepeatRecord, RemoveRecord, RemoveRecord, ChangeFlags, CutEnd};

} // namespace

std::string MutateSceneFile(std::string_view bytes, uint32_t seed)
{
    Dice dice(seed);
    std::string made(bytes);
    for (size_t i = 1 + dice.Below(4); i > 0; --i)
        dice.Pick(kFileSteps)(made, dice);
    return made;
}

std::string CrossSceneFiles(std::string_view bytes, std::string_view other, uint32_t seed)
{
    Dice dice(seed);
    std::string made(bytes);
    const SceneFileMap map = MapSceneFile(bytes), otherMap = MapSceneFile(other);
    for (int tries = 0; tries < 16 && !map.records.empty() && !otherMap.records.empty(); ++tries) {
        const SceneRecord& place = dice.Pick(map.records);
        const SceneRecord& taken = dice.Pick(otherMap.records);
        if (place.kind != taken.kind || taken.size > other.size() - taken.at)
            continue;
        InsertRecord(made, place, std::string(other.substr(taken.at, taken.size)),
                     std::string(other.substr(taken.twinAt, taken.twinSize)));
        break;
    }
    return made;
}
