#include "render/KRE_VertexList.h"

#include "gfx/KRE_Gfx.h"

void KRE_Gfx::DrawTriangleList(KRE_VertexList& list, int32_t count)
{
    DrawTriangleList(list, &list.worldTM, count);
}
