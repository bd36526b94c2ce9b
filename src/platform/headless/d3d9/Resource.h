#pragma once

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/ComObject.h"
#include "platform/headless/d3d9/ResourceOwner.h"

#include <d3d9.h>

namespace headless {

/// The lifetime of one child of a device. It has two counts: the caller's references, and the
/// bindings, which are the slots of the device that use the object (a stage, a stream, a target).
/// The object lives while either is above 0, so a bound texture survives its last `Release`; it
/// keeps the device alive only while the caller holds a reference.
class ResourceLife {
public:
    /// `owner` is not owned and outlives this.
    ResourceLife(ResourceOwner& owner, ObjectKind kind, D3DPOOL pool);
    virtual ~ResourceLife();
    ResourceLife(const ResourceLife&) = delete;
    ResourceLife& operator=(const ResourceLife&) = delete;

    ULONG AddReference();
    /// May destroy this object, and then the device.
    ULONG RemoveReference();
    void AddBinding() { ++bindings; }
    /// May destroy this object.
    void RemoveBinding();

    ResourceOwner& Owner() const { return owner; }

private:
    ResourceOwner& owner;
    const ObjectKind kind;
    const D3DPOOL pool;
    ULONG references = 0;
    ULONG bindings = 0;
};

/// A device slot that uses an object: holds one binding to it. `T` has `AddBinding` and
/// `RemoveBinding`.
template <typename T>
class Binding {
public:
    Binding() = default;
    ~Binding() { Set(nullptr); }
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;

    T* Get() const { return object; }

    void Set(T* next)
    {
        if (next)
            next->AddBinding();
        T* last = object;
        object = next;
        if (last)
            last->RemoveBinding();
    }

private:
    T* object = nullptr;
};

HRESULT DeviceOfResource(ResourceOwner& owner, IDirect3DDevice9** deviceOut);

/// The operations common to all resources, on top of the interface they implement. Answers to
/// IDirect3DResource9 and to `Ids`.
template <typename Interface, const IID&... Ids>
class Resource : public ComIdentity<Interface, IID_IDirect3DResource9, Ids...> {
public:
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) override
    {
        return DeviceOfResource(GetOwner(), deviceOut);
    }

    HRESULT STDMETHODCALLTYPE SetPrivateData(REFGUID, const void* data, DWORD size,
                                             DWORD flags) override
    {
        return Unmodelled("SetPrivateData", data, size, flags);
    }

    HRESULT STDMETHODCALLTYPE GetPrivateData(REFGUID, void* dataOut, DWORD*) override
    {
        return Unmodelled("GetPrivateData", dataOut);
    }

    HRESULT STDMETHODCALLTYPE FreePrivateData(REFGUID) override
    {
        return Unmodelled("FreePrivateData");
    }

    /// Stored for managed resources only, the only ones that could be moved.
    DWORD STDMETHODCALLTYPE SetPriority(DWORD newPriority) override
    {
        const DWORD last = priority;
        if (ResourcePool() == D3DPOOL_MANAGED)
            priority = newPriority;
        return last;
    }

    DWORD STDMETHODCALLTYPE GetPriority() override { return priority; }
    void STDMETHODCALLTYPE PreLoad() override {} // all memory is the same here

protected:
    ~Resource() = default;
    virtual ResourceOwner& GetOwner() const = 0;
    virtual D3DPOOL ResourcePool() const = 0;

private:
    DWORD priority = 0;
};

} // namespace headless
