#include "platform/headless/d3dx/PixelRect.h"

namespace headless {

bool IsRectInside(const RECT& rect, UINT width, UINT height)
{
    return rect.left >= 0 && rect.top >= 0 && rect.left < rect.right && rect.top < rect.bottom &&
           static_cast<UINT>(rect.right) <= width && static_cast<UINT>(rect.bottom) <= height;
}

bool CropSource(PixelSource& sourceInOut, const RECT& rect)
{
    if (!IsRectInside(rect, sourceInOut.width, sourceInOut.height))
        return false;
    const UINT unit = sourceInOut.format->UnitSide();
    const auto left = static_cast<UINT>(rect.left);
    const auto top = static_cast<UINT>(rect.top);
    if (left % unit != 0 || top % unit != 0)
        return false;

    const size_t offset =
        top / unit * sourceInOut.pitchBytes + size_t{left / unit} * sourceInOut.format->unitBytes;
    sourceInOut.bits = static_cast<const uint8_t*>(sourceInOut.bits) + offset;
    sourceInOut.width = static_cast<UINT>(rect.right) - left;
    sourceInOut.height = static_cast<UINT>(rect.bottom) - top;
    return true;
}

} // namespace headless
