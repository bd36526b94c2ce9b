#pragma once

#include "gfx/KRE_VertexListBase.h"
#include "scene/KRE_3dObject.h"

/// A vertex list with its own place in the world: it is drawn with its `worldTM`.
class KRE_VertexList : public KRE_VertexListBase, public KRE_3dObject {
public:
    KRE_VertexList() { KRE_3dObject::SetClassName("KRE_VertexList"); }
};
