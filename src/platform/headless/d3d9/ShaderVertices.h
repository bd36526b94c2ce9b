#pragma once

#include "platform/headless/d3d9/PrimitiveAssembly.h"
#include "platform/headless/d3d9/ShaderTexture.h"
#include "platform/headless/d3d9/VertexPipeline.h"

namespace headless {

/// Vertex processing by a vertex shader. Primitives come in runs: all vertices that a run needs and
/// that are not kept from before are shaded in groups of four.
class ShaderVertices {
public:
    /// `state` and `stream`'s bytes must not change until the draw ends.
    HRESULT Prepare(const DrawState& state, const VertexLayout& layout, const VertexStream& stream,
                    const VaryingLayout& varyings);

    /// Primitives of a run at most.
    static constexpr UINT kRun = 16;

    /// Shades the vertices of a run; each index is below the stream's count.
    void ShadeRun(const UINT* indices, int count);
    /// Corner `i` of the run, valid until the next one.
    const ShadedVertex& Corner(int i) const { return *corners[i]; }

    uint64_t Work() const { return machine.work; }

private:
    static constexpr UINT kKept = 1024; ///< cached vertices; a power of two
    static constexpr int kMaxCorners = static_cast<int>(kRun) * 3;
    static constexpr int kLanes = shader::kMaxGroups * 4;

    /// Where an output of the program goes.
    struct Output {
        uint32_t at; ///< its place in the program
        unsigned mask;
        int place;   ///< index into the varyings
        int count;   ///< numbers that are wanted
        int divisor; ///< component to divide by, after two coordinates; -1 for none
        bool isHeld; ///< to 0..1
    };
    struct Default {
        int place;
        int count;
        float value;
    };

    ShadedVertex* PlaceFor(UINT index);
    void Fetch(UINT index, int lane);
    void ShadePending();
    void Write(int lane, ShadedVertex& out);
    void FindOutputs(const DrawState& state, const VaryingLayout& varyings);
    const shader::Binding* FindOutput(DWORD usage, DWORD usageIndex) const;
    void Want(DWORD usage, DWORD usageIndex, int place, int count, int divisor, float absent);
    float LaneValue(uint32_t place, int lane);

    VertexLayout layout;
    VertexStream stream;
    shader::Program* code = nullptr; ///< not owned
    shader::Machine machine;
    ShaderTextures textures;
    Output outputs[kMaxShaderInputs + 4];
    int outputCount = 0;
    Default defaults[kMaxShaderInputs + 4];
    int defaultCount = 0;
    const shader::Binding* position = nullptr;
    const shader::Binding* pointSize = nullptr;
    float sizeOfAll = 1.0f, leastSize = 1.0f, mostSize = 64.0f;
    UINT planeCount = 0;
    float planes[kClipPlaneCount][4] = {}; ///< in clip space; zeros if disabled
    const ShadedVertex* corners[kMaxCorners] = {};
    UINT pendingIndex[kMaxCorners] = {};
    ShadedVertex* pendingPlace[kMaxCorners] = {};
    int pendingCount = 0;
    int spareCount = 0;
    UINT runNumber = 0;
    UINT keptIndex[kKept] = {}; ///< vertex index plus one; 0 for an empty slot
    UINT keptRun[kKept] = {};   ///< the run that used the slot last
    ShadedVertex kept[kKept] = {};
    ShadedVertex spare[kMaxCorners] = {};
    UINT spareIndex[kMaxCorners] = {};
};

} // namespace headless
