#pragma once

#include <cstdint>

#include "gfx/KRE_VertexLayout.h"

/// Whether vertices of a format can be stored in a QSB file and described by `VertexInfo`: a plain
/// position, or one with up to four weights and bone indices; a normal; two or more floats in the
/// first set of texture coordinates, if there is one; no reserved flags.
bool CanStoreFormat(DWORD fvf);

/// The layout of a mesh's vertices in a QSB file. Sizes and offsets in bytes.
struct QSB_VertexForm {
    /// `info` is the format given in the file, `version` the file's version.
    QSB_VertexForm(const VertexInfo& info, int32_t version);

    bool isRaw = false;      ///< as they were in memory, `size` is the stride
    int32_t weightCount = 0; ///< entries; the last one is unused
    bool hasUV = false;      ///< u and v of set 0
    bool hasRoomForUV = false;
    int32_t boneOffset = -1; ///< of four bone indices; -1 if there are none
    int32_t size = 0;
};

/// Packs `count` vertices into records of the current version. Returns the number of values that do
/// not fit 16 bits, which are clamped, or are NaN, which become 0.
int32_t PackVertices(const uint8_t* vertices, const VertexInfo& info, int32_t count,
                     uint8_t* recordsOut);

/// Unpacks records into vertices of the layout `info`, which may have more parts than `stored`, the
/// layout given in the file. The extra parts become 0.
void UnpackVertices(const uint8_t* records, const QSB_VertexForm& form, const VertexInfo& stored,
                    int32_t count, const VertexInfo& info, uint8_t* verticesOut);
