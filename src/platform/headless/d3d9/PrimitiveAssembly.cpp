#include "platform/headless/d3d9/PrimitiveAssembly.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace headless {

namespace {

/// Where primitive i of a type begins (i * step), and how many vertices all take (count * step +
/// extra).
struct Shape {
    D3DPRIMITIVETYPE type;
    int corners;
    UINT step;
    UINT extra;
};

constexpr Shape kShapes[] = {
    {D3DPT_POINTLIST, 1, 1, 0},    {D3DPT_LINELIST, 2, 2, 0},      {D3DPT_LINESTRIP, 2, 1, 1},
    {D3DPT_TRIANGLELIST, 3, 3, 0}, {D3DPT_TRIANGLESTRIP, 3, 1, 2}, {D3DPT_TRIANGLEFAN, 3, 1, 2},
};

const Shape* FindShape(D3DPRIMITIVETYPE type)
{
    for (const Shape& shape : kShapes)
        if (shape.type == type)
            return &shape;
    return nullptr;
}

template <class Index>
Index IndexAt(const uint8_t* bytes)
{
    Index index;
    std::memcpy(&index, bytes, sizeof index);
    return index;
}

template <class Index>
void FindRangeOf(const uint8_t* start, UINT count, uint32_t& lowestOut, uint32_t& highestOut)
{
    // In rows that compilers turn into vector instructions: clones of a large mesh read very many indices.
    constexpr UINT kRow = 16 / sizeof(Index);
    Index lowest[kRow], highest[kRow], row[kRow];
    std::fill_n(lowest, kRow, std::numeric_limits<Index>::max());
    std::fill_n(highest, kRow, Index{0});
    const auto take = [&] {
        for (UINT k = 0; k < kRow; ++k) {
            lowest[k] = std::min(lowest[k], row[k]);
            highest[k] = std::max(highest[k], row[k]);
        }
    };
    UINT i = 0;
    for (; count - i >= kRow; i += kRow) {
        std::memcpy(row, start + size_t{i} * sizeof(Index), sizeof row);
        take();
    }
    if (i < count) { // repeated up to a whole row
        std::memcpy(row, start + size_t{i} * sizeof(Index), sizeof(Index) * (count - i));
        std::fill(row + (count - i), row + kRow, row[0]);
        take();
    }
    lowestOut = *std::min_element(lowest, lowest + kRow);
    highestOut = *std::max_element(highest, highest + kRow);
}

} // namespace

int64_t IndexSource::Vertex(UINT i) const
{
    const uint64_t place = uint64_t{first} + i;
    if (!bytes)
        return static_cast<int64_t>(place);
    const uint8_t* at = bytes + place * sizeBytes;
    return int64_t{sizeBytes == 2 ? IndexAt<uint16_t>(at) : IndexAt<uint32_t>(at)} + base;
}

void IndexSource::FindRange(UINT count, uint32_t& lowestOut, uint32_t& highestOut) const
{
    const uint8_t* start = bytes + uint64_t{first} * sizeBytes;
    if (sizeBytes == 2)
        FindRangeOf<uint16_t>(start, count, lowestOut, highestOut);
    else
        FindRangeOf<uint32_t>(start, count, lowestOut, highestOut);
}

int CornerCount(D3DPRIMITIVETYPE type)
{
    const Shape* shape = FindShape(type);
    return shape ? shape->corners : 0;
}

uint64_t VertexCountOf(D3DPRIMITIVETYPE type, UINT count)
{
    const Shape* shape = FindShape(type);
    return shape ? uint64_t{count} * shape->step + shape->extra : 0;
}

void CornersOf(D3DPRIMITIVETYPE type, UINT i, UINT (&placesOut)[3])
{
    const Shape* shape = FindShape(type);
    const UINT start = shape ? i * shape->step : 0;
    placesOut[0] = start;
    placesOut[1] = start + 1;
    placesOut[2] = start + 2;
    if (type == D3DPT_TRIANGLESTRIP && i % 2 == 1) { // these have the opposite winding
        placesOut[1] = start + 2;
        placesOut[2] = start + 1;
    }
    if (type == D3DPT_TRIANGLEFAN) { // the shared vertex comes last
        placesOut[0] = start + 1;
        placesOut[1] = start + 2;
        placesOut[2] = 0;
    }
}

} // namespace headless
