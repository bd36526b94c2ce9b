#pragma once

#include "tests/support/EffectFile.h"

#include <string>
#include <vector>

/// A compiled effect (fx_2_0) with what the engine looks for in one: parameters by semantic, techniques with
/// their passes. Under Wine the system's D3DX cannot read effect texts.
class CompiledEffect {
public:
    struct Pass {
        const char* renderTarget = nullptr; ///< text of the annotation; null for none
        DWORD cullMode = 0;                 ///< 0 leaves the state unchanged
        bool hasVertexShader = false;
        bool hasUnknownShader = false; ///< a pixel shader of a version that no device supports
        const char* texture =
            nullptr; ///< the parameter that stage 0 shows; null leaves it unchanged
    };

    /// Each has its semantic as its name, too.
    void AddFloat(const std::string& semantic, float value = 0.0f);
    void AddInt(const std::string& semantic, int32_t value = 0);
    void AddVector(const std::string& semantic, UINT elements = 0);
    void AddMatrix(const std::string& semantic, UINT elements = 0);
    /// If a picture's file name is given, also adds the annotation that holds it.
    void AddTexture(const std::string& semantic, const char* resourceName = nullptr);
    void AddTechnique(const std::vector<Pass>& passes);

    std::string Bytes() const { return file.Bytes(); }

private:
    void AddNumbers(const std::string& semantic, D3DXPARAMETER_CLASS kind, UINT rows,
                    UINT elements);
    EffectFile::Pass PassOf(const Pass& pass, uint32_t number);

    EffectFile file;
    uint32_t techniqueCount = 0;
};
