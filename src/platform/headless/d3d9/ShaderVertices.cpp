#include "platform/headless/d3d9/ShaderVertices.h"

#include "platform/headless/d3d9/Adapter.h"

#include <algorithm>
#include <cmath>

namespace headless {

namespace {

float ByteShare(D3DCOLOR colour, int shift)
{
    return static_cast<float>(colour >> shift & 0xFF) / 255.0f;
}

void PutColour(D3DCOLOR colour, float (&out)[4])
{
    out[0] = ByteShare(colour, 16);
    out[1] = ByteShare(colour, 8);
    out[2] = ByteShare(colour, 0);
    out[3] = ByteShare(colour, 24);
}

void PutIndices(const VertexLayout& layout, const uint8_t (&indices)[4], float (&out)[4])
{
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<float>(indices[i]) / (layout.indicesAreColour ? 255.0f : 1.0f);
}

/// Missing coordinates of a stored set are 0, 0, 1.
void PutCoordinates(const VertexLayout& layout, const VertexStream& stream, UINT index, UINT set,
                    float (&out)[4])
{
    if (set >= static_cast<UINT>(layout.setCount))
        return;
    FetchCoordinates(layout, stream, index, set, out);
    const int floats = layout.setFloats[set];
    for (int i = floats; i < 4; ++i)
        out[i] = i == 3 ? 1.0f : 0.0f;
}

/// What an input with a usage holds for a vertex; 0 for parts that the format lacks.
void PutInput(const VertexLayout& layout, const VertexStream& stream, UINT index,
              const SourceVertex& vertex, const shader::Binding& input, float (&out)[4])
{
    const bool isFirst = input.usageIndex == 0;
    std::fill(std::begin(out), std::end(out), 0.0f);
    switch (input.usage) {
    case D3DDECLUSAGE_POSITION:
        if (isFirst)
            std::copy_n(vertex.position, 4, out);
        break;
    case D3DDECLUSAGE_BLENDWEIGHT:
        if (isFirst && layout.weights >= 0) {
            std::copy_n(vertex.weights, 4, out);
            if (layout.weightCount < 4)
                out[3] = 1.0f;
        }
        break;
    case D3DDECLUSAGE_BLENDINDICES:
        if (isFirst && layout.indices >= 0)
            PutIndices(layout, vertex.indices, out);
        break;
    case D3DDECLUSAGE_NORMAL:
        if (isFirst && layout.normal >= 0) {
            std::copy_n(vertex.normal, 3, out);
            out[3] = 1.0f;
        }
        break;
    case D3DDECLUSAGE_PSIZE:
        if (isFirst && layout.pointSize >= 0) {
            out[0] = vertex.pointSize;
            out[3] = 1.0f;
        }
        break;
    case D3DDECLUSAGE_COLOR:
        if (isFirst && layout.diffuse >= 0)
            PutColour(vertex.diffuse, out);
        if (input.usageIndex == 1 && layout.specular >= 0)
            PutColour(vertex.specular, out);
        break;
    case D3DDECLUSAGE_TEXCOORD:
        PutCoordinates(layout, stream, index, input.usageIndex, out);
        break;
    default:
        break;
    }
}

} // namespace

const shader::Binding* ShaderVertices::FindOutput(DWORD usage, DWORD usageIndex) const
{
    for (const shader::Binding& output : code->outputs)
        if (output.usage == usage && output.usageIndex == usageIndex)
            return &output;
    return nullptr;
}

/// An output that the shader does not write is `absent` in all components.
void ShaderVertices::Want(DWORD usage, DWORD usageIndex, int place, int count, int divisor,
                          float absent)
{
    const shader::Binding* output = FindOutput(usage, usageIndex);
    if (!output) {
        defaults[defaultCount++] = {place, count + (divisor >= 0 ? 1 : 0), absent};
        if (divisor >= 0)
            defaults[defaultCount++] = {place + count, 1, 1.0f};
        return;
    }
    const bool isHeld = code->version.major < 3 && usage == D3DDECLUSAGE_COLOR;
    outputs[outputCount++] = {output->at, output->mask, place, count, divisor, isHeld};
}

/// Fixed stages read colours and coordinates; a pixel shader reads what it declares.
void ShaderVertices::FindOutputs(const DrawState& state, const VaryingLayout& varyings)
{
    outputCount = defaultCount = 0;
    const auto absent = [](DWORD usage, DWORD index) {
        return usage == D3DDECLUSAGE_COLOR && index == 0 ? 1.0f : 0.0f;
    };
    for (int i = 0; i < varyings.inputCount; ++i) {
        const ShaderInput& input = varyings.inputs[i];
        Want(input.usage, input.usageIndex, input.place, 4, -1,
             absent(input.usage, input.usageIndex));
    }
    if (varyings.fog >= 0)
        Want(D3DDECLUSAGE_FOG, 0, varyings.fog, 1, -1, 1.0f);
    if (varyings.areWhole)
        return;
    if (varyings.diffuse >= 0)
        Want(D3DDECLUSAGE_COLOR, 0, varyings.diffuse, 4, -1, 1.0f);
    if (varyings.specular >= 0)
        Want(D3DDECLUSAGE_COLOR, 1, varyings.specular, 4, -1, 0.0f);
    for (UINT stage = 0; stage < kStageCount; ++stage) {
        if (varyings.coordinates[stage] < 0)
            continue;
        const DWORD count = state.stage[stage][D3DTSS_TEXTURETRANSFORMFLAGS] & 7;
        const int last = count == D3DTTFF_COUNT3 ? 2 : (count == D3DTTFF_COUNT2 ? 1 : 3);
        Want(D3DDECLUSAGE_TEXCOORD, stage, varyings.coordinates[stage], 2,
             varyings.isProjected[stage] ? last : -1, 0.0f);
    }
}

HRESULT ShaderVertices::Prepare(const DrawState& state, const VertexLayout& vertexLayout,
                                const VertexStream& vertexStream, const VaryingLayout& varyings)
{
    layout = vertexLayout;
    stream = vertexStream;
    code = state.vertexProgram;
    const HRESULT result = textures.Prepare(state, *code, kPixelSamplerCount, machine);
    if (FAILED(result))
        return result;
    const ShaderConstants& values = state.vertexConstants;
    machine.Prepare(*code, {values.floats.Values(), values.ints.Values(), values.bools.Values()});
    machine.work = 0;
    FindOutputs(state, varyings);
    position = FindOutput(D3DDECLUSAGE_POSITION, 0);
    pointSize = FindOutput(D3DDECLUSAGE_PSIZE, 0);
    sizeOfAll = state.RenderFloat(D3DRS_POINTSIZE);
    leastSize = state.RenderFloat(D3DRS_POINTSIZE_MIN);
    mostSize = state.RenderFloat(D3DRS_POINTSIZE_MAX);
    const DWORD enabled = state.Render(D3DRS_CLIPPLANEENABLE);
    planeCount = enabled != 0 ? kClipPlaneCount : 0;
    for (UINT i = 0; i < planeCount; ++i)
        for (size_t c = 0; c < 4; ++c)
            planes[i][c] = (enabled >> i & 1) != 0 ? state.clipPlanes[i][c] : 0.0f;
    std::fill(std::begin(keptIndex), std::end(keptIndex), 0u);
    std::fill(std::begin(keptRun), std::end(keptRun), 0u);
    runNumber = 0;
    return D3D_OK;
}

/// The vertex if it is kept, else a place for it, noted as pending. A slot that this run already uses
/// is not taken away: the vertex goes to a spare place.
ShadedVertex* ShaderVertices::PlaceFor(UINT index)
{
    const UINT slot = index % kKept;
    ShadedVertex* place = &kept[slot];
    if (keptIndex[slot] == index + 1) {
        keptRun[slot] = runNumber;
        return place;
    }
    if (keptRun[slot] == runNumber) {
        for (int i = 0; i < spareCount; ++i)
            if (spareIndex[i] == index)
                return &spare[i];
        spareIndex[spareCount] = index;
        place = &spare[spareCount++];
    } else {
        keptIndex[slot] = index + 1;
        keptRun[slot] = runNumber;
    }
    pendingIndex[pendingCount] = index;
    pendingPlace[pendingCount++] = place;
    return place;
}

void ShaderVertices::ShadeRun(const UINT* indices, int count)
{
    ++runNumber;
    pendingCount = spareCount = 0;
    for (int i = 0; i < count; ++i)
        corners[i] = PlaceFor(indices[i]);
    ShadePending();
}

void ShaderVertices::Fetch(UINT index, int lane)
{
    SourceVertex vertex;
    FetchVertex(layout, stream, index, vertex);
    for (const shader::Binding& input : code->inputs) {
        float values[4];
        PutInput(layout, stream, index, vertex, input, values);
        for (uint32_t c = 0; c < 4; ++c)
            if ((input.mask >> c & 1) != 0)
                reinterpret_cast<float*>(machine.At(input.at + c * shader::kMaxGroups))[lane] =
                    values[c];
    }
}

/// The last group may hold fewer than four vertices: its other lanes compute what was there before.
void ShaderVertices::ShadePending()
{
    for (int first = 0; first < pendingCount; first += kLanes) {
        const int count = std::min(kLanes, pendingCount - first);
        for (int lane = 0; lane < (count + 3) / 4 * 4; ++lane)
            Fetch(pendingIndex[first + std::min(lane, count - 1)], lane);
        machine.Run((count + 3) / 4);
        for (int lane = 0; lane < count; ++lane)
            Write(lane, *pendingPlace[first + lane]);
    }
}

float ShaderVertices::LaneValue(uint32_t place, int lane)
{
    return reinterpret_cast<const float*>(machine.At(place))[lane];
}

void ShaderVertices::Write(int lane, ShadedVertex& out)
{
    for (uint32_t c = 0; c < 4; ++c)
        out.clip[c] = position ? LaneValue(position->at + c * shader::kMaxGroups, lane) : 0.0f;
    for (UINT i = 0; i < planeCount; ++i)
        out.planeDistance[i] = planes[i][0] * out.clip[0] + planes[i][1] * out.clip[1] +
                               planes[i][2] * out.clip[2] + planes[i][3] * out.clip[3];
    for (int i = 0; i < outputCount; ++i) {
        const Output& output = outputs[i];
        const auto value = [&](int c) {
            if ((output.mask >> c & 1) == 0)
                return 0.0f;
            const float stored =
                LaneValue(output.at + static_cast<uint32_t>(c) * shader::kMaxGroups, lane);
            return output.isHeld ? FirstLane(Saturate(Splat(stored))) : stored;
        };
        for (int c = 0; c < output.count; ++c)
            out.varying[output.place + c] = value(c);
        if (output.divisor >= 0)
            out.varying[output.place + output.count] = value(output.divisor);
    }
    for (int i = 0; i < defaultCount; ++i)
        std::fill_n(out.varying + defaults[i].place, defaults[i].count, defaults[i].value);
    float side = pointSize ? LaneValue(pointSize->at, lane) : sizeOfAll;
    side = side > leastSize ? side : leastSize;
    side = side < mostSize ? side : mostSize;
    out.pointSize = side > 0.0f ? std::min(side, kMaxPointSize) : 0.0f;
}

} // namespace headless
