#pragma once

#include <d3dx9.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// Writes a compiled effect (fx_2_0) as a compiler would: parameters, then techniques with their
/// passes. Under Wine the system's D3DX cannot read effect texts.
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

    std::string Bytes() const;

private:
    using Words = std::vector<uint32_t>;
    struct Resource {
        uint32_t technique, pass, state;
        uint32_t usage; ///< what `content` is: code of a shader, or the name of a parameter
        std::string content;
    };

    uint32_t AddText(const std::string& text);
    uint32_t AddWords(const Words& words);
    uint32_t AddType(D3DXPARAMETER_TYPE type, D3DXPARAMETER_CLASS kind, const std::string& name,
                     const std::string& semantic, UINT elements, const Words& extent);
    /// The value of an object is its number.
    uint32_t AddObject(std::string text);
    void AddParameter(uint32_t typeOffset, uint32_t valueOffset, const Words& annotations = {});
    Words StringAnnotation(const std::string& name, const std::string& text);
    void AddObjectState(Words& states, uint32_t operation, D3DXPARAMETER_TYPE type,
                        const Resource& resource);

    Words pool = {0}; ///< starts with the empty name
    Words parameters;
    Words techniques;
    uint32_t parameterCount = 0;
    uint32_t techniqueCount = 0;
    std::vector<std::string> strings; ///< of the objects, from 1 on
    std::vector<bool> hasString;      ///< shaders have resources instead
    std::vector<Resource> resources;
};
