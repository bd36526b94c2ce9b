// Plain records of objects and scenes in QSB files.

#include "qsb/QSB_SceneFields.h"

void KRE_ClipObject::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_ClipObject::Load(QSB_InputFile& file)
{
    LoadFields(file, *this);
}

void KRE_SceneSettings::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_SceneSettings::Load(QSB_InputFile& file)
{
    *this = KRE_SceneSettings();
    LoadFields(file, *this);
}

void KRE_BoneInfo::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_BoneInfo::Load(QSB_InputFile& file)
{
    KRE_BoneInfo stored;
    LoadFields(file, stored);
    *this = KRE_BoneInfo(stored.name, stored.boneInitTM, stored.meshInitTM);
}
