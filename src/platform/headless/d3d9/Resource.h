#pragma once

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/ComObject.h"
#include "platform/headless/d3d9/ResourceOwner.h"

#include <d3d9.h>

namespace headless {

/// The lifetime of one child of a device. There are two counts: the caller's references, and the
/// bindings, which are the places in the device that use the object (a stage, a stream, a target).
/// The object lives while either is above 0, so a bound texture outlives its last `Release`; it keeps
/// the device alive only while the caller refers to it.
class ResourceLife {
public:
    /// `owner` is not owned and outlives this.
    ResourceLife(ResourceOwner& owner, ObjectKind kind, D3DPOOL pool);
    virtual ~ResourceLife();
    ResourceLife(const ResourceLife&) = delete;
    ResourceLife& operator=(const ResourceLife&) = delete;

    ULONG AddReference();
    /// May destroy this, and then the device.
    ULONG RemoveReference();
    void AddBinding() { ++bindings; }
    /// May destroy this.
    void RemoveBinding();

    ResourceOwner& Owner() const { return owner; }

private:
    ResourceOwner& owner;
    const ObjectKind kind;
    const D3DPOOL pool;
    ULONG references = 0;
    ULONG bindings = 0;
};

/// A slot of the device that uses an object: holds one binding on it. `T` has `AddBinding` and
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

/// The operations that all resources share, over the interface they implement. It answers to that of
/// all resources and to `Ids`.
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

    /// Kept for managed resources alone, which are the only ones that could be moved.
    DWORD STDMETHODCALLTYPE SetPriority(DWORD newPriority) override
    {
        const DWORD last = priority;
        if (ResourcePool() == D3DPOOL_MANAGED)
            priority = newPriority;
        return last;
    }

    DWORD STDMETHODCALLTYPE GetPriority() override { return priority; }
    void STDMETHODCALLTYPE PreLoad() override {} // all memory is one here

protected:
    ~Resource() = default;
    virtual ResourceOwner& GetOwner() const = 0;
    virtual D3DPOOL ResourcePool() const = 0;

private:
    DWORD priority = 0;
};

} // namespace headless
