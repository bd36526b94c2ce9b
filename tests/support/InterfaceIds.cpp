#include "tests/support/InterfaceIds.h"

#include <cstring>

HRESULT GiveInterface(IUnknown* object, REFIID iid, std::initializer_list<GUID> ids,
                      void** objectOut)
{
    if (!objectOut)
        return E_POINTER;
    *objectOut = nullptr;
    for (const GUID& id : ids) {
        if (std::memcmp(&id, &iid, sizeof id) != 0)
            continue;
        object->AddRef();
        *objectOut = object;
        return S_OK;
    }
    return E_NOINTERFACE;
}
