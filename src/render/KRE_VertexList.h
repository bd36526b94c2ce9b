#pragma once

#include "gfx/KRE_VertexListBase.h"
#include "scene/KRE_3dObject.h"

/// A vertex list with a place in the world of its own: it is drawn through its `worldTM`.
class KRE_VertexList : public KRE_VertexListBase, public KRE_3dObject {
public:
    KRE_VertexList() { KRE_3dObject::SetClassName("KRE_VertexList"); }
};
