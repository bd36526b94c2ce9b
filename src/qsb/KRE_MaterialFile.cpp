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

/// Whether its record has one length only: no keys and no effect.
static bool IsPlain(const KRE_MaterialInfo& material)
{
    int32_t keys = material.opacityTrack.GetKeyCount();
    for (const KRE_ColorTrack* track : {&material.diffuseTrack, &material.ambientTrack,
                                        &material.specularTrack, &material.selfIllumTrack})
        keys |= track->GetKeyCount();
    return keys == 0 && material.effectParams.name.IsEmpty();
}

void KRE_MaterialInfo::Save(File& file) const
{
    if (!IsPlain(*this)) {
        SaveFields(file, *this);
        return;
    }
    QSB_RecordBytes record;
    Fields(record, *this);
    record.WriteTo(file);
}

void KRE_MaterialInfo::Load(QSB_InputFile& file)
{
    *this = KRE_MaterialInfo();
    LoadFields(file, *this);
}
