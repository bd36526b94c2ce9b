#include "platform/headless/d3d9/Resource.h"

namespace headless {

ResourceLife::ResourceLife(ResourceOwner& resourceOwner, ObjectKind objectKind, D3DPOOL objectPool)
    : owner(resourceOwner),
      kind(objectKind),
      pool(objectPool)
{}

ResourceLife::~ResourceLife() = default;

ULONG ResourceLife::AddReference()
{
    if (references++ == 0)
        owner.ChildReferenced(kind, pool);
    return references;
}

ULONG ResourceLife::RemoveReference()
{
    if (references == 0)
        return 0; // a surplus `Release` must not destroy what the device still uses
    const ULONG left = --references;
    if (left > 0)
        return left;
    ResourceOwner& counted = owner;
    const ObjectKind objectKind = kind;
    const D3DPOOL objectPool = pool;
    if (bindings == 0)
        delete this;
    counted.ChildUnreferenced(objectKind, objectPool);
    return 0;
}

void ResourceLife::RemoveBinding()
{
    if (--bindings == 0 && references == 0)
        delete this;
}

HRESULT DeviceOfResource(ResourceOwner& owner, IDirect3DDevice9** deviceOut)
{
    if (!deviceOut)
        return D3DERR_INVALIDCALL;
    IDirect3DDevice9& device = owner.DeviceInterface();
    device.AddRef();
    *deviceOut = &device;
    return D3D_OK;
}

} // namespace headless
