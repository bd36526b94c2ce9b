// Cameras and lights in QSB files.

#include "qsb/QSB_SceneFields.h"

void KRE_Target3dObject::Save(File& file) const
{
    SaveFields(file, *this);
}

/// QUIRK: the object is evaluated before it has a target or parent, so `up` is its own y axis at
/// second 0. A target linked later does not change that, while an import leaves +z there: a camera
/// that leans is upright from a text and leans from its binary scene.
void KRE_Target3dObject::Load(QSB_InputFile& file)
{
    const QSB_ObjectInHand inHand(file, *this);
    KRE_Target3dObject::Reset();
    LoadFields(file, *this);
}

void KRE_Camera::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_Camera::Load(QSB_InputFile& file)
{
    const QSB_ObjectInHand inHand(file, *this);
    Reset();
    LoadFields(file, *this);
}

void KRE_Light::Save(File& file) const
{
    SaveFields(file, *this);
}

void KRE_Light::Load(QSB_InputFile& file)
{
    const QSB_ObjectInHand inHand(file, *this);
    Reset();
    LoadFields(file, *this);
}
