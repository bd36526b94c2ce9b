// Cameras and lights in QSB files.

#include "qsb/QSB_ReadContext.h"
#include "qsb/QSB_Record.h"
#include "scene/KRE_Camera.h"
#include "scene/KRE_Light.h"

void KRE_Target3dObject::Save(File& file) const
{
    KRE_3dObject::Save(file);
    WriteText(file, targetName);
}

/// QUIRK: the object is evaluated while it has no target and no parent yet, so that `up` is its own y axis at
/// second 0. That stays where a target is linked later, while an import leaves +z there: a camera that leans
/// is upright from a text and leans from its binary scene.
void KRE_Target3dObject::Load(File& file)
{
    const QSB_ObjectInHand inHand(*this);
    KRE_Target3dObject::Reset();
    KRE_3dObject::Load(file);
    gQsbReadContext.ReadText(file, &targetName);
}

void KRE_Camera::Save(File& file) const
{
    KRE_Target3dObject::Save(file);
    file.WriteFloat32(fov);
}

void KRE_Camera::Load(File& file)
{
    const QSB_ObjectInHand inHand(*this);
    Reset();
    KRE_Target3dObject::Load(file);
    file.ReadFloat32(&fov);
}

void KRE_Light::Save(File& file) const
{
    KRE_Target3dObject::Save(file);
    file.WriteInt32(lightOn);
    file.WriteInt32(lightMode);
    WriteRecord(file, light);
}

void KRE_Light::Load(File& file)
{
    const QSB_ObjectInHand inHand(*this);
    Reset();
    KRE_Target3dObject::Load(file);
    file.ReadInt32(&lightOn);
    file.ReadInt32(&lightMode);
    ReadRecord(file, &light);
}
