#pragma once

#include <d3dx9.h>

#include <string>

#include "tests/platform/d3dx/EffectOnDevice.h"

/// A device and effects made from texts on it.
class EffectTest : public EffectOnDevice {
protected:
    /// Fails the test if the text is refused.
    Com<ID3DXEffect> Make(const std::string& text, ID3DXEffectPool* pool = nullptr);
    /// The effect of a text in compiled form. Fails the test if the text has none.
    Com<ID3DXEffect> MakeCompiled(const std::string& text);
    /// The float that the effect's first pass gives to FogStart.
    float FogStartOf(ID3DXEffect* effect);
    /// The compiler's message for a text; "" if it accepts it.
    std::string ErrorOf(const std::string& text, const D3DXMACRO* defines = nullptr,
                        ID3DXInclude* include = nullptr);
    /// The compiler's message for a file; "" if it accepts it.
    std::string ErrorOfFile(const char* path);
};

/// A value of a parameter, found by name. Fails the test if the parameter does not fit.
float FloatOf(ID3DXEffect* effect, const char* name);
int IntOf(ID3DXEffect* effect, const char* name);
std::string StringOf(ID3DXEffect* effect, const char* name);
