#pragma once

#include "base/DynaMem.h"
#include "base/ErrorClass.h"

/// Returns an object that was just created. Null, which means out of memory, is an `Error`.
template <class T>
T* CheckMemory(T* object, ErrorClass& report)
{
    if (!object)
        report.Error("Not enough memory for the scene");
    return object;
}

/// Adds an object to a list of the scene, which owns it.
template <class T, int32_t N>
T* AddObject(DynaMem<T, N>* list, ErrorClass& report)
{
    return CheckMemory(list->GetSlot(list->Add()), report);
}
