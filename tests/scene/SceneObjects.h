#pragma once

#include "scene/KRE_3dScene.h"

/// Adds a named object to `scene`, which owns it.
inline KRE_3dObject& AddObject(KRE_3dScene& scene, const char* name, const char* parentName = "")
{
    KRE_3dObject* object = scene.objects.GetSlot(scene.objects.Add());
    object->name = name;
    object->parentName = parentName;
    return *object;
}
