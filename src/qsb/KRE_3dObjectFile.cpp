// The node of a scene in QSB files: the first part of the record of every object.

#include "qsb/QSB_ReadContext.h"
#include "qsb/QSB_Record.h"
#include "scene/KRE_3dObject.h"

namespace {

/// The pose as it lies in the file. The fourth column of the pivot is not stored: it is 0, 0, 0, 1.
struct StoredPose {
    D3DXMATRIX initTM;
    D3DXVECTOR3 mirror;
    D3DXVECTOR3 position;
    D3DXVECTOR3 scale;
    D3DXVECTOR3 rotationAxis;
    float rotationAngle;
    float pivotRows[4][3];
};
static_assert(sizeof(StoredPose) == kStoredPoseSize + 48);

enum InheritFlag : uint8_t {
    kInheritPosition = 1,
    kInheritScale = 2,
    kInheritRotation = 4,
    kInheritMirror = 8,
};

StoredPose PoseOf(const KRE_ObjectFields& fields)
{
    StoredPose pose = {fields.initTM,
                       fields.mirror,
                       fields.position,
                       fields.scale,
                       fields.rotationAxis,
                       fields.rotationAngle,
                       {}};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 3; ++column)
            pose.pivotRows[row][column] = fields.pivotTM.m[row][column];
    }
    return pose;
}

void TakePose(const StoredPose& pose, KRE_ObjectFields* fieldsOut)
{
    fieldsOut->initTM = pose.initTM;
    fieldsOut->mirror = pose.mirror;
    fieldsOut->position = pose.position;
    fieldsOut->scale = pose.scale;
    fieldsOut->rotationAxis = pose.rotationAxis;
    fieldsOut->rotationAngle = pose.rotationAngle;
    fieldsOut->pivotTM = IdentityMatrix();
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 3; ++column)
            fieldsOut->pivotTM.m[row][column] = pose.pivotRows[row][column];
    }
}

uint8_t InheritFlagsOf(const KRE_ObjectFields& fields)
{
    uint8_t flags = 0;
    flags |= fields.inheritPosition ? kInheritPosition : 0;
    flags |= fields.inheritScale ? kInheritScale : 0;
    flags |= fields.inheritRotation ? kInheritRotation : 0;
    flags |= fields.inheritMirror ? kInheritMirror : 0;
    return flags;
}

void TakeInheritFlags(uint8_t flags, KRE_ObjectFields* fieldsOut)
{
    fieldsOut->inheritPosition = flags & kInheritPosition ? 1 : 0;
    fieldsOut->inheritScale = flags & kInheritScale ? 1 : 0;
    fieldsOut->inheritRotation = flags & kInheritRotation ? 1 : 0;
    fieldsOut->inheritMirror = flags & kInheritMirror ? 1 : 0;
}

/// False if `count` is not the number of keys. A list without keys is stored as such, whatever its
/// counter says: a count without a chain behind it could not be read again.
template <class T>
bool SaveTrack(File& file, const KRE_KeyList<T>& keys, int32_t count)
{
    file.WriteInt32(keys ? count : 0);
    return !keys || keys.Head()->Save(file) == count;
}

template <class T>
int32_t LoadTrack(File& file, const char* what, KRE_KeyList<T>& keys)
{
    constexpr int32_t kLeastKey = 43; // of any kind, with the byte that tells of a further one
    const int32_t count = gQsbReadContext.ReadCount(file, what, kLeastKey);
    for (bool more = count > 0; more;) {
        T key;
        more = key.Load(file);
        keys.Append(key);
    }
    return count;
}

} // namespace

void KRE_3dObject::Save(File& file) const
{
    file.WriteInt16(static_cast<int16_t>(kQsbObjectId));
    file.WriteInt32(objectKind);
    WriteRecord(file, PoseOf(*this));
    WriteText(file, name);
    WriteText(file, parentName);
    file.WriteInt8(static_cast<int8_t>(InheritFlagsOf(*this)));
    if (!SaveTrack(file, posKeys, posKeyCount))
        Error("numPosKey does not match actual size");
    if (!SaveTrack(file, rotKeys, rotKeyCount))
        Error("numRotKey does not match actual size");
    if (!SaveTrack(file, scaleKeys, scaleKeyCount))
        Error("numScaleKey does not match actual size");
    file.WriteInt32(loop);
    file.WriteFloat32(loopEnd);
}

void KRE_3dObject::Load(File& file)
{
    const QSB_ObjectInHand inHand(*this);
    KRE_3dObject::Reset();
    uint16_t readId = 0;
    file.ReadInt16(&readId);
    if (readId != kQsbObjectId)
        Error("Invalid file read id, file: %s", file.GetFileName().c_str());
    file.ReadInt32(&objectKind);
    StoredPose pose;
    ReadRecord(file, &pose);
    TakePose(pose, this);
    gQsbReadContext.ReadText(file, &name);
    gQsbReadContext.ReadText(file, &parentName);
    uint8_t flags = 0;
    file.ReadInt8(&flags);
    TakeInheritFlags(flags, this);
    posKeyCount = LoadTrack(file, "position keys", posKeys);
    rotKeyCount = LoadTrack(file, "rotation keys", rotKeys);
    scaleKeyCount = LoadTrack(file, "scale keys", scaleKeys);
    file.ReadInt32(&loop);
    file.ReadFloat32(&loopEnd);
    if (gQsbReadContext.cutToWindow)
        TrimKeys(gQsbReadContext.windowStart, gQsbReadContext.windowEnd);
    BuildKeyIndex();
    Evaluate(0.0, 1, 1);
    dirty = 1;
}
