#pragma once

#include <d3dx9.h>

#include <map>
#include <memory>
#include <string>

#include "platform/headless/d3d9/ComObject.h"
#include "platform/headless/d3dx/effect/FxParameter.h"

namespace headless::fx {

inline constexpr IID kEffectPoolId = {
    0x9537AB04, 0x3250, 0x412E, {0x82, 0x13, 0xFC, 0xD2, 0xF8, 0x67, 0x79, 0x33}};

/// Values of `shared` parameters, by name. A value lives as long as any effect of the pool uses it.
class EffectPool final : public ComObject<ID3DXEffectPool, kEffectPoolId> {
public:
    /// Makes `parameter` use the value that another effect of the pool has under its name;
    /// otherwise registers its own for later effects. False if the types differ.
    bool Share(FxParameter& parameter);

private:
    struct Entry {
        std::weak_ptr<FxStorage> storage;
        std::string type;
    };

    std::map<std::string, Entry> entries;
};

} // namespace headless::fx
