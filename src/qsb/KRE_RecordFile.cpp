// The plain records of objects and scenes in QSB files.

#include "qsb/QSB_ReadContext.h"
#include "qsb/QSB_Record.h"
#include "scene/KRE_BoneInfo.h"
#include "scene/KRE_ClipObject.h"
#include "scene/KRE_SceneSettings.h"

void KRE_ClipObject::Save(File& file) const
{
    WriteRecord(file, *this);
}

void KRE_ClipObject::Load(File& file)
{
    ReadRecord(file, this);
}

// `disableLightsAfter` is the last field and is not stored.
static constexpr int32_t kSettingsBytes = offsetof(KRE_SceneSettings, disableLightsAfter);
static constexpr int32_t kOldSettingsBytes = offsetof(KRE_SceneSettings, drawTransparentOnly);

void KRE_SceneSettings::Save(File& file) const
{
    file.Write(this, kSettingsBytes);
}

void KRE_SceneSettings::Load(File& file)
{
    *this = KRE_SceneSettings();
    const bool isOld = gQsbReadContext.version < kQsbEffectNames;
    file.Read(this, isOld ? kOldSettingsBytes : kSettingsBytes);
}

void KRE_BoneInfo::Save(File& file) const
{
    const int32_t length = static_cast<int32_t>(strnlen(name, kNameSize));
    file.WriteInt32(length);
    file.Write(name, length);
    WriteRecord(file, boneInitTM);
    WriteRecord(file, meshInitTM);
}

void KRE_BoneInfo::Load(File& file)
{
    String storedName;
    gQsbReadContext.ReadText(file, &storedName);
    D3DXMATRIX boneInit;
    D3DXMATRIX meshInit;
    ReadRecord(file, &boneInit);
    ReadRecord(file, &meshInit);
    *this = KRE_BoneInfo(storedName.c_str(), boneInit, meshInit);
}
