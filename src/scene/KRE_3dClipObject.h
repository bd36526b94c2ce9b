#pragma once

#include "scene/KRE_3dObject.h"
#include "scene/KRE_ClipObject.h"

/// A node with bounds.
class KRE_3dClipObject : public KRE_3dObject, public KRE_ClipObject {
public:
    KRE_3dClipObject() { SetClassName("KRE_3dClipObject"); }

    void Reset()
    {
        KRE_ClipObject::Reset();
        KRE_3dObject::Reset();
    }
};
