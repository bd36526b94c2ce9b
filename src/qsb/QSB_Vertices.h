#pragma once

#include <cstdint>

#include "gfx/KRE_VertexLayout.h"

/// Whether vertices of a format can be stored in a QSB file and be held by `VertexInfo`: a plain
/// position, or one with up to four weights and bone indices; a normal; two or more floats in the
/// first set of texture coordinates, if there is one; nothing reserved.
bool CanStoreFormat(DWORD fvf);

/// How the vertices of a mesh lie in a QSB file. Sizes and offsets in bytes.
struct QSB_VertexForm {
    /// `info` is what the file says of the format, `version` the file's.
    QSB_VertexForm(const VertexInfo& info, int32_t version);

    bool isRaw = false;      ///< as they lay in memory, `size` is the stride
    int32_t weightCount = 0; ///< entries; the last one means nothing
    bool hasUV = false;      ///< u and v of set 0
    bool hasRoomForUV = false;
    int32_t boneOffset = -1; ///< of four bone indices; -1 without them
    int32_t size = 0;
};

/// Packs `count` vertices into records of the current version. Gives the number of values that are
/// too large for their 16 bits, or no number; these are clamped, and 0.
int32_t PackVertices(const uint8_t* vertices, const VertexInfo& info, int32_t count,
                     uint8_t* recordsOut);

/// Unpacks records into vertices of the layout `info`, which may have more parts than `stored`, the
/// layout that the file tells of. Those parts become 0.
void UnpackVertices(const uint8_t* records, const QSB_VertexForm& form, const VertexInfo& stored,
                    int32_t count, const VertexInfo& info, uint8_t* verticesOut);
