#pragma once

#include "base/DynaMem.h"
#include "base/ErrorClass.h"
#include "base/WithMemory.h"
#include "scene/KRE_3dObject.h"

/// Returns what was just allocated. Null, which means out of memory, is an `Error`.
template <class T>
T* CheckMemory(T* object, ErrorClass& report)
{
    if (!object)
        report.Error("Not enough memory for the scene");
    return object;
}

/// Runs `work` on an object of the scene. If its memory runs out, the `Error` names the object.
template <class Work>
void WithMemoryFor(const KRE_3dObject& object, ErrorClass& report, const Work& work)
{
    WithMemory(work,
               [&] { report.Error("Not enough memory for object '%s'", object.name.c_str()); });
}

/// Adds an object to a list of the scene, which owns it.
template <class T, int32_t N>
T* AddObject(DynaMem<T, N>* list, ErrorClass& report)
{
    return CheckMemory(list->GetSlot(list->Add()), report);
}
