#include "qsb/QSB_Vertices.h"

#include <cstring>
#include <type_traits>

#include "platform/LittleEndian.h"
#include "qsb/QSB_Format.h"

namespace {

constexpr int32_t kPositionBytes = 12;
constexpr int32_t kUVBytes = 8;
constexpr int32_t kNormalBytes = 6;
constexpr int32_t kBoneBytes = 4;
constexpr double kNormalUnit = 32767.0;
constexpr double kWeightUnit = 65535.0;

constexpr DWORD kTwoTextureFloats = 0;
constexpr DWORD kOneTextureFloat = 3;
constexpr DWORD kFirstSetShift = 16;

/// Truncates a product to a 16-bit integer; values out of range are clamped and counted.
template <class Whole>
Whole CutTo(double product, int32_t* clampedOut)
{
    constexpr double kLow = std::is_signed_v<Whole> ? -32768.0 : 0.0;
    constexpr double kHigh = std::is_signed_v<Whole> ? 32767.0 : 65535.0;
    if (product > kLow - 1.0 && product < kHigh + 1.0)
        return static_cast<Whole>(static_cast<int32_t>(product));
    ++*clampedOut;
    return static_cast<Whole>(product > 0.0 ? kHigh : product < 0.0 ? kLow : 0.0);
}

template <class T>
T Take(const uint8_t*& at)
{
    const T value = LoadLittle<T>(at);
    at += sizeof value;
    return value;
}

template <class T>
void Put(uint8_t*& at, const T& value)
{
    StoreLittle(at, value);
    at += sizeof value;
}

/// Copies floats between a record and a vertex.
void CopyFloats(uint8_t* to, const uint8_t* from, int32_t sizeBytes)
{
    std::memcpy(to, from, static_cast<size_t>(sizeBytes));
    ReorderWords(to, sizeof(float), static_cast<size_t>(sizeBytes) / sizeof(float));
}

void UnpackVertex(const uint8_t* at, const QSB_VertexForm& form, const VertexInfo& info,
                  uint8_t* vertex)
{
    CopyFloats(vertex, at, kPositionBytes);
    at += kPositionBytes;
    if (form.hasUV)
        CopyFloats(vertex + info.textureOffset, at, kUVBytes);
    if (form.hasUV || form.hasRoomForUV)
        at += kUVBytes;
    float normal[3];
    for (float& part : normal)
        part = static_cast<float>(Take<int16_t>(at) / kNormalUnit);
    std::memcpy(vertex + info.normalOffset, normal, sizeof normal);
    for (int32_t i = 0; i < form.weightCount - 1; ++i) {
        const float weight = static_cast<float>(Take<uint16_t>(at) / kWeightUnit);
        std::memcpy(vertex + info.weightOffset + 4 * i, &weight, sizeof weight);
    }
    if (form.weightCount > 0)
        at += sizeof(uint16_t); // the last weight, which follows from the others
    if (form.boneOffset >= 0)
        std::memcpy(vertex + info.matrixIndexOffset, at, kBoneBytes);
}

struct Part {
    int32_t from;
    int32_t to;
    int32_t size;
};

/// The parts that both layouts have.
int32_t SharedParts(const VertexInfo& stored, const VertexInfo& info, Part (&partsOut)[8])
{
    const int32_t weightBytes = stored.blendCount > 0 ? 4 * (stored.blendCount - 1) : 0;
    const int32_t textureBytes = stored.textureCount > 0 ? stored.stride - stored.textureOffset : 0;
    const Part candidates[] = {
        {0, 0, kPositionBytes},
        {stored.weightOffset, info.weightOffset, weightBytes},
        {stored.matrixIndexOffset, info.matrixIndexOffset, kBoneBytes},
        {stored.normalOffset, info.normalOffset, 12},
        {stored.pointSizeOffset, info.pointSizeOffset, 4},
        {stored.diffuseOffset, info.diffuseOffset, 4},
        {stored.specularOffset, info.specularOffset, 4},
        {stored.textureOffset, info.textureOffset, textureBytes},
    };
    int32_t count = 0;
    for (const Part& part : candidates) {
        if (part.from >= 0 && part.to >= 0)
            partsOut[count++] = part;
    }
    return count;
}

/// Brings vertices from the order of files to that of memory. All parts are words of four bytes, except that
/// the bone indices are bytes.
void ReorderVertices(const VertexInfo& info, int32_t count, uint8_t* vertices)
{
    for (int32_t i = 0; i < count; ++i, vertices += info.stride) {
        ReorderWords(vertices, 4, static_cast<size_t>(info.stride) / 4);
        if (info.matrixIndexOffset >= 0)
            ReorderWords(vertices + info.matrixIndexOffset, kBoneBytes, 1); // back again
    }
}

void UnpackRaw(const uint8_t* records, const VertexInfo& stored, int32_t count,
               const VertexInfo& info, uint8_t* vertices)
{
    if (stored.fvf == info.fvf) {
        std::memcpy(vertices, records,
                    static_cast<size_t>(count) * static_cast<size_t>(stored.stride));
        return;
    }
    Part parts[8];
    const int32_t partCount = SharedParts(stored, info, parts);
    for (int32_t i = 0; i < count; ++i) {
        for (int32_t p = 0; p < partCount; ++p)
            std::memcpy(vertices + parts[p].to, records + parts[p].from,
                        static_cast<size_t>(parts[p].size));
        records += stored.stride;
        vertices += info.stride;
    }
}

} // namespace

bool CanStoreFormat(DWORD fvf)
{
    const DWORD position = fvf & (D3DFVF_XYZ | D3DFVF_XYZRHW | D3DFVF_XYZB2);
    const bool hasWeights = position == D3DFVF_XYZB1 || position == D3DFVF_XYZB2 ||
                            position == D3DFVF_XYZB3 || position == D3DFVF_XYZB4;
    const DWORD bones = fvf & (D3DFVF_LASTBETA_UBYTE4 | D3DFVF_LASTBETA_D3DCOLOR);
    if (bones != (hasWeights ? D3DFVF_LASTBETA_UBYTE4 : 0))
        return false;
    if (!hasWeights && position != D3DFVF_XYZ)
        return false;
    if (!(fvf & D3DFVF_NORMAL) || (fvf & (D3DFVF_RESERVED0 | D3DFVF_RESERVED2)))
        return false;
    const DWORD sets = (fvf & D3DFVF_TEXCOUNT_MASK) >> D3DFVF_TEXCOUNT_SHIFT;
    const DWORD firstSet = sets > 0 ? fvf >> kFirstSetShift & 3 : kTwoTextureFloats;
    return sets <= 8 && firstSet != kOneTextureFloat;
}

QSB_VertexForm::QSB_VertexForm(const VertexInfo& info, int32_t version)
    : isRaw(version < kQsbPackedVertices),
      weightCount(info.blendCount),
      hasUV(info.textureCount > 0),
      hasRoomForUV(!hasUV && version < kQsbOptionalUV)
{
    if (isRaw) {
        boneOffset = info.matrixIndexOffset;
        size = info.stride;
        return;
    }
    size = kPositionBytes + (hasUV || hasRoomForUV ? kUVBytes : 0) + kNormalBytes + 2 * weightCount;
    if (info.fvf & D3DFVF_LASTBETA_UBYTE4) {
        boneOffset = size;
        size += kBoneBytes;
    }
}

int32_t PackVertices(const uint8_t* vertices, const VertexInfo& info, int32_t count,
                     uint8_t* recordsOut)
{
    const QSB_VertexForm form(info, kQsbCurrent);
    int32_t clamped = 0;
    uint8_t* at = recordsOut;
    for (int32_t i = 0; i < count; ++i, vertices += info.stride) {
        CopyFloats(at, vertices, kPositionBytes);
        at += kPositionBytes;
        if (form.hasUV) {
            CopyFloats(at, vertices + info.textureOffset, kUVBytes);
            at += kUVBytes;
        }
        float values[3];
        std::memcpy(values, vertices + info.normalOffset, sizeof values);
        for (const float part : values)
            Put(at, CutTo<int16_t>(part * kNormalUnit, &clamped));
        for (int32_t w = 0; w < form.weightCount - 1; ++w) {
            float weight;
            std::memcpy(&weight, vertices + info.weightOffset + 4 * w, sizeof weight);
            Put(at, CutTo<uint16_t>(weight * kWeightUnit, &clamped));
        }
        if (form.weightCount > 0)
            Put(at, uint16_t{0}); // its place in memory holds the bone indices
        if (form.boneOffset >= 0) {
            std::memcpy(at, vertices + info.matrixIndexOffset, kBoneBytes);
            at += kBoneBytes;
        }
    }
    return clamped;
}

void UnpackVertices(const uint8_t* records, const QSB_VertexForm& form, const VertexInfo& stored,
                    int32_t count, const VertexInfo& info, uint8_t* verticesOut)
{
    std::memset(verticesOut, 0, static_cast<size_t>(count) * static_cast<size_t>(info.stride));
    if (form.isRaw) {
        UnpackRaw(records, stored, count, info, verticesOut);
        ReorderVertices(info, count, verticesOut);
        return;
    }
    for (int32_t i = 0; i < count; ++i) {
        UnpackVertex(records, form, info, verticesOut);
        records += form.size;
        verticesOut += info.stride;
    }
}
