#include "gfx/DirectXErrorName.h"

#include <d3d9.h>
#include <dxerr9.h>

const char* DirectXErrorName(HRESULT result)
{
    return DXGetErrorString9A(result);
}
