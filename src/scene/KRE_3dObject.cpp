#include "scene/KRE_3dObject.h"

#include <cstdarg>

#include "base/FormatText.h"

static_assert(sizeof(D3DXMATRIX) + 4 * sizeof(D3DXVECTOR3) + sizeof(float) == kStoredPoseSize);

KRE_3dObject::KRE_3dObject()
{
    SetClassName("KRE_3dObject");
}

KRE_3dObject::KRE_3dObject(const KRE_3dObject& other) : KRE_ResourceBase(), KRE_ObjectFields(other)
{
    SetClassName(other.className);
}

void KRE_3dObject::Error(const char* format, ...) const
{
    char text[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(text, sizeof text, format, arguments);
    va_end(arguments);
    KRE_Base::Error("%s: %s", name.c_str(), text);
}

void KRE_3dObject::Warning(const char* format, ...) const
{
    char text[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(text, sizeof text, format, arguments);
    va_end(arguments);
    KRE_Base::Warning("%s: %s", name.c_str(), text);
}

void KRE_3dObject::RebuildInitTM()
{
    D3DXMatrixTranslation(&translationTM, position.x, position.y, position.z);
    BuildScaling(scale);
    D3DXMatrixRotationAxis(&rotationTM, &rotationAxis, rotationAngle);
    initTM = ProductOfParts();
    worldTM = initTM;
    currentPosition = position;
    dirty = 1;
}

int32_t KRE_3dObject::SetPosition(float x, float y, float z, int32_t rebuild)
{
    position = {x, y, z};
    if (rebuild)
        RebuildInitTM();
    else
        dirty = 1;
    return 1;
}

void KRE_3dObject::GetWorldPosition(D3DXVECTOR3& positionOut) const
{
    positionOut = {worldTM._41, worldTM._42, worldTM._43};
}

D3DXMATRIX KRE_3dObject::CorrectionTM(const D3DXMATRIX* extraTM) const
{
    D3DXMATRIX correction = IdentityMatrix();
    D3DXMatrixInverse(&correction, nullptr, &worldTM);
    correction = correction * (pivotTM * worldTM);
    return extraTM ? correction * *extraTM : correction;
}

void KRE_3dObject::BuildKeyIndex()
{
    posIndex.Free();
    rotIndex.Free();
    scaleIndex.Free();
    if (!posIndex.Build(posKeys, posKeyCount))
        Error("Check: Pos key numbers don't match");
    if (!rotIndex.Build(rotKeys, rotKeyCount))
        Error("Check: Rot key numbers don't match");
    if (!scaleIndex.Build(scaleKeys, scaleKeyCount))
        Error("Check: Scale key numbers don't match");
    posKeys.TimesChanged();
    rotKeys.TimesChanged();
    scaleKeys.TimesChanged();
}

void KRE_3dObject::ResetKeys()
{
    ClearKeys();
    Reset();
}

void KRE_3dObject::Reset()
{
    static_cast<KRE_ObjectFields&>(*this) = KRE_ObjectFields();
}

void KRE_3dObject::Assign(const KRE_3dObject& other)
{
    if (this != &other)
        static_cast<KRE_ObjectFields&>(*this) = other;
}

void KRE_3dObject::CloneKeys(KRE_3dObject& target, int32_t deep) const
{
    if (!deep) {
        target.ClearKeys();
        return;
    }
    static_cast<KRE_KeyTracks&>(target) = *this;
    target.BuildKeyIndex();
}
