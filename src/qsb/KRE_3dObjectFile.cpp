// The node of a scene in QSB files: the first part of the record of every object.

#include "qsb/QSB_SceneFields.h"

void KRE_3dObject::Save(File& file) const
{
    file.WriteInt16(static_cast<int16_t>(kQsbObjectId));
    SaveFields(file, *this);
}

void KRE_3dObject::Load(QSB_InputFile& file)
{
    const QSB_ObjectInHand inHand(file, *this);
    KRE_3dObject::Reset();
    uint16_t readId = 0;
    file.ReadInt16(&readId);
    if (readId != kQsbObjectId)
        Error("Invalid file read id, file: %s", file.GetFileName().c_str());
    LoadFields(file, *this);
    if (file.cutToWindow)
        TrimKeys(file.windowStart, file.windowEnd);
    BuildKeyIndex();
    Evaluate(0.0, 1, 1);
    dirty = 1;
}
