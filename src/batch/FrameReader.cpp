#include "batch/FrameReader.h"

#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <jpeglib.h>

#include "base/WriteWholeFile.h"
#include "gfx/KRE_Gfx.h"
#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/PngWriter.h"

namespace {

constexpr int kThumbWidth = 160;
constexpr int kThumbHeight = 120;
constexpr int kThumbQualities[] = {70, 45,
                                   20}; // the next one if the picture is too large for a page
constexpr unsigned long kMostThumbBytes = 12000;

/// The mean of the pixels of a rectangle that is not empty.
uint32_t MeanColor(const DrawnFrame& frame, int left, int top, int right, int bottom)
{
    uint64_t red = 0;
    uint64_t green = 0;
    uint64_t blue = 0;
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const uint32_t pixel =
                frame.argb[static_cast<size_t>(y) * static_cast<size_t>(frame.width) +
                           static_cast<size_t>(x)];
            red += pixel >> 16 & 0xFF;
            green += pixel >> 8 & 0xFF;
            blue += pixel & 0xFF;
        }
    }
    const auto count = static_cast<uint64_t>(right - left) * static_cast<uint64_t>(bottom - top);
    return static_cast<uint32_t>(red / count << 16 | green / count << 8 | blue / count);
}

DrawnFrame Shrunk(const DrawnFrame& frame)
{
    DrawnFrame small;
    const double scale =
        std::min({1.0, double{kThumbWidth} / frame.width, double{kThumbHeight} / frame.height});
    small.width = std::clamp(static_cast<int>(frame.width * scale), 1, kThumbWidth);
    small.height = std::clamp(static_cast<int>(frame.height * scale), 1, kThumbHeight);
    for (int y = 0; y < small.height; ++y) {
        const int top = y * frame.height / small.height;
        const int bottom = std::max((y + 1) * frame.height / small.height, top + 1);
        for (int x = 0; x < small.width; ++x) {
            const int left = x * frame.width / small.width;
            const int right = std::max((x + 1) * frame.width / small.width, left + 1);
            small.argb.push_back(MeanColor(frame, left, top, right, bottom));
        }
    }
    return small;
}

struct JpegFailure {
    jpeg_error_mgr base;
    jmp_buf place;
};

/// The library leaves by longjmp, so nothing in here has a destructor.
bool EncodeJpeg(const DrawnFrame& frame, int quality, unsigned char* row, unsigned char** bytesOut,
                unsigned long* sizeOut)
{
    jpeg_compress_struct jpeg;
    JpegFailure failure;
    jpeg.err = jpeg_std_error(&failure.base);
    failure.base.error_exit = [](j_common_ptr common) {
        longjmp(reinterpret_cast<JpegFailure*>(common->err)->place, 1);
    };
    jpeg_create_compress(&jpeg);
    if (setjmp(failure.place) != 0) {
        jpeg_destroy_compress(&jpeg);
        return false;
    }
    jpeg_mem_dest(&jpeg, bytesOut, sizeOut);
    jpeg.image_width = static_cast<JDIMENSION>(frame.width);
    jpeg.image_height = static_cast<JDIMENSION>(frame.height);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            const uint32_t pixel =
                frame.argb[static_cast<size_t>(y) * static_cast<size_t>(frame.width) +
                           static_cast<size_t>(x)];
            row[x * 3] = static_cast<unsigned char>(pixel >> 16);
            row[x * 3 + 1] = static_cast<unsigned char>(pixel >> 8);
            row[x * 3 + 2] = static_cast<unsigned char>(pixel);
        }
        JSAMPROW rows[] = {row};
        jpeg_write_scanlines(&jpeg, rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    return true;
}

} // namespace

DrawnFrame ReadDrawnFrame()
{
    ComPointer<IDirect3DSurface9> target;
    D3DSURFACE_DESC desc = {};
    if (FAILED(gGfx->device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, target.Out())) ||
        FAILED(target->GetDesc(&desc)))
        return {};
    ComPointer<IDirect3DSurface9> copy;
    D3DLOCKED_RECT locked = {};
    if (FAILED(gGfx->device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format,
                                                         D3DPOOL_SYSTEMMEM, copy.Out(), nullptr)) ||
        FAILED(gGfx->device->GetRenderTargetData(target.Get(), copy.Get())) ||
        FAILED(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY)))
        return {};
    DrawnFrame frame;
    frame.width = static_cast<int>(desc.Width);
    frame.height = static_cast<int>(desc.Height);
    frame.argb.resize(size_t{desc.Width} * desc.Height);
    const headless::PixelFormat* const format = headless::FindPixelFormat(desc.Format);
    const bool isRead =
        format && headless::UnpackImage(*format, desc.Width, desc.Height, locked.pBits,
                                        static_cast<size_t>(locked.Pitch), frame.argb.data());
    copy->UnlockRect();
    return isRead ? frame : DrawnFrame();
}

bool KeepFrame(const DrawnFrame& frame, const std::string& leaf, std::string& reasonOut)
{
    if (frame.argb.empty()) {
        reasonOut = "the device does not give it";
        return false;
    }
    const bool isKept = WriteWholeFile(leaf, [&](std::FILE* stream) {
        return headless::WritePngStream(stream, frame.width, frame.height, frame.argb.data(), false,
                                        reasonOut);
    });
    if (!isKept && reasonOut.empty())
        reasonOut = std::strerror(errno);
    return isKept;
}

std::string ThumbOf(const DrawnFrame& frame)
{
    if (frame.argb.empty())
        return "";
    const DrawnFrame small = Shrunk(frame);
    std::string jpeg;
    for (const int quality : kThumbQualities) {
        unsigned char row[kThumbWidth * 3];
        unsigned char* bytes = nullptr;
        unsigned long size = 0;
        const bool isMade = EncodeJpeg(small, quality, row, &bytes, &size);
        const std::unique_ptr<unsigned char, void (*)(void*)> owner(bytes, std::free);
        if (!isMade)
            return "";
        jpeg.assign(reinterpret_cast<const char*>(bytes), size);
        if (size <= kMostThumbBytes)
            break;
    }
    return jpeg;
}
