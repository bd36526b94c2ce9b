#pragma once

#include <d3dx9.h>

#include <map>
#include <memory>
#include <string>

#include "platform/headless/d3dx/effect/FxParameter.h"

namespace headless::fx {

/// Values of `shared` parameters, by name. A value lives as long as an effect of the pool uses it.
class EffectPool final : public ID3DXEffectPool {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    /// Gives `parameter` the value that another effect of the pool has under its name, or keeps its own
    /// for those to come. False if the other is of another type.
    bool Share(FxParameter& parameter);

private:
    struct Entry {
        std::weak_ptr<FxStorage> storage;
        std::string type;
    };

    ULONG references = 1;
    std::map<std::string, Entry> entries;
};

} // namespace headless::fx
