#pragma once

#include <cstring>
#include <d3d9.h>

namespace headless {

/// `QueryInterface` for an object that implements `Interface` and answers to IUnknown and `Ids`.
/// Derived classes define the reference counting.
template <typename Interface, const IID&... Ids>
class ComIdentity : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) final
    {
        if (!objectOut)
            return E_POINTER;
        *objectOut = nullptr;
        if (!((std::memcmp(&iid, &IID_IUnknown, sizeof iid) == 0) || ... ||
              (std::memcmp(&iid, &Ids, sizeof iid) == 0)))
            return E_NOINTERFACE;
        this->AddRef();
        *objectOut = static_cast<Interface*>(this);
        return S_OK;
    }

protected:
    ~ComIdentity() = default;
};

/// An object with one reference count: its creator holds the first reference, and the last
/// `Release` destroys it.
template <typename Interface, const IID&... Ids>
class ComObject : public ComIdentity<Interface, Ids...> {
public:
    ULONG STDMETHODCALLTYPE AddRef() final { return ++references; }

    ULONG STDMETHODCALLTYPE Release() final
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    ComObject() = default;
    virtual ~ComObject() = default;

private:
    ULONG references = 1;
};

} // namespace headless
