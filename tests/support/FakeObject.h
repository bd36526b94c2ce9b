#pragma once

#include "tests/support/ComHandle.h"

#include <d3d9.h>

/// The number of live fake objects: a test that ends with more than it began with leaks.
int FakeObjectsAlive();

/// Used by the fakes only.
void CountFakeObject(int step);

/// Another reference to `object`, which may be null.
template <class Interface>
ComHandle<Interface> Shared(Interface* object)
{
    if (object)
        object->AddRef();
    return ComHandle<Interface>(object);
}

/// The reference count of the fakes. A new object has one reference, which its creator holds.
template <class Interface>
class FakeObject : public Interface {
public:
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;
    virtual ~FakeObject() { CountFakeObject(-1); }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    FakeObject() { CountFakeObject(1); }

private:
    ULONG references = 1;
};
