#pragma once

#include "platform/headless/d3d9/ObjectCensus.h"

#include <d3d9.h>

namespace headless {

/// What a resource needs of the device that made it: to be counted while the caller refers to it, and
/// to hand the device out. The device knows its resources; they know no more of it than this.
class ResourceOwner {
public:
    /// The caller took its first reference of a child.
    virtual void ChildReferenced(ObjectKind kind, D3DPOOL pool) = 0;
    /// The caller gave its last one back. May destroy this.
    virtual void ChildUnreferenced(ObjectKind kind, D3DPOOL pool) = 0;
    virtual IDirect3DDevice9& DeviceInterface() = 0;

protected:
    ~ResourceOwner() = default;
};

} // namespace headless
