// Materials and their tracks in QSB files.

#include "qsb/QSB_MaterialFields.h"

void KRE_ColorTrack::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_ColorTrack::Load(QSB_InputFile& file)
{
    LoadFields(file, *this);
}

void KRE_FloatTrack::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_FloatTrack::Load(QSB_InputFile& file)
{
    LoadFields(file, *this);
}

void KRE_EffectParams::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_EffectParams::Load(QSB_InputFile& file)
{
    *this = KRE_EffectParams();
    LoadFields(file, *this);
}

void KRE_MaterialInfo::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_MaterialInfo::Load(QSB_InputFile& file)
{
    *this = KRE_MaterialInfo();
    LoadFields(file, *this);
}
