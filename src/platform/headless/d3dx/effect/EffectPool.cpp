#include "platform/headless/d3dx/effect/EffectPool.h"

#include <new>

namespace headless::fx {

namespace {

/// Everything that must match between two declarations. Struct nesting is limited, so this ends.
std::string DescribeType(const FxParameter& parameter)
{
    std::string text = std::to_string(parameter.kind) + ' ' + std::to_string(parameter.type) + ' ' +
                       std::to_string(parameter.rows) + ' ' + std::to_string(parameter.columns) +
                       ' ' + std::to_string(parameter.elements) + ' ' + parameter.semantic;
    if (parameter.IsArray())
        return parameter.kind == D3DXPC_STRUCT ? text + DescribeType(*parameter.parts[0]) : text;
    for (const auto& part : parameter.parts)
        text += '{' + part->name + ' ' + DescribeType(*part) + '}';
    return text;
}

void Adopt(FxParameter& parameter, const std::shared_ptr<FxStorage>& storage)
{
    parameter.storage = storage;
    for (const auto& part : parameter.parts)
        Adopt(*part, storage);
}

} // namespace

bool EffectPool::Share(FxParameter& parameter)
{
    Entry& entry = entries[parameter.name];
    const std::string type = DescribeType(parameter);
    const std::shared_ptr<FxStorage> known = entry.storage.lock();
    if (!known) {
        entry = {parameter.storage, type};
        return true;
    }
    if (entry.type != type)
        return false;
    Adopt(parameter, known);
    return true;
}

} // namespace headless::fx

using namespace headless::fx;

HRESULT WINAPI D3DXCreateEffectPool(ID3DXEffectPool** poolOut)
{
    if (!poolOut)
        return D3DERR_INVALIDCALL;
    *poolOut = new (std::nothrow) EffectPool;
    return *poolOut ? S_OK : E_OUTOFMEMORY;
}
