#pragma once

#include "gfx/KRE_VertexListBase.h"

/// A list of one of the engine's own vertex layouts, refilled for each draw or filled once. It is
/// in world space and has no transform.
template <class Vertex>
class KRE_VertexListTemp : public KRE_VertexListBase {
public:
    KRE_VertexListTemp() { SetFVFInfo(Vertex::kFvf); }

    /// As `Lock`, with the layout's type.
    Vertex* LockVertices(int32_t first, int32_t count, DWORD flags)
    {
        return static_cast<Vertex*>(Lock(first, count, flags));
    }
    /// The first mapped vertex, or null.
    Vertex* GetVertices() const { return static_cast<Vertex*>(lockedVertices); }
};
