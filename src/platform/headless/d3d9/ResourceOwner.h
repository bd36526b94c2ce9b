#pragma once

#include "platform/headless/d3d9/ObjectCensus.h"

#include <d3d9.h>

namespace headless {

/// What a resource needs from the device that created it: to be counted while the caller holds a
/// reference, and to return the device. The device knows its resources; they know only this
/// interface.
class ResourceOwner {
public:
    /// The caller took its first reference to a child.
    virtual void ChildReferenced(ObjectKind kind, D3DPOOL pool) = 0;
    /// The caller released its last one. May destroy this object.
    virtual void ChildUnreferenced(ObjectKind kind, D3DPOOL pool) = 0;
    virtual IDirect3DDevice9& DeviceInterface() = 0;

protected:
    ~ResourceOwner() = default;
};

} // namespace headless
