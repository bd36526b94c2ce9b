// Plain records of objects and scenes in QSB files.

#include "qsb/QSB_SceneFields.h"

void KRE_ClipObject::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_ClipObject::Load(File& file)
{
    LoadFields(file, *this);
}

void KRE_SceneSettings::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_SceneSettings::Load(File& file)
{
    *this = KRE_SceneSettings();
    LoadFields(file, *this);
}

void KRE_BoneInfo::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_BoneInfo::Load(File& file)
{
    KRE_BoneInfo stored;
    LoadFields(file, stored);
    *this = KRE_BoneInfo(stored.name, stored.boneInitTM, stored.meshInitTM);
}
