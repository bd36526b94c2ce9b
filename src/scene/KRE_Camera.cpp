#include "scene/KRE_Camera.h"

KRE_Camera::KRE_Camera()
{
    SetClassName("KRE_Camera");
    objectKind = kObjectCamera;
}

void KRE_Camera::Reset()
{
    fov = kDefaultFov;
    KRE_Target3dObject::Reset();
    objectKind = kObjectCamera;
}
