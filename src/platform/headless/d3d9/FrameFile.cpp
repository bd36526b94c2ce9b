#include "platform/headless/d3d9/FrameFile.h"

#include "platform/headless/d3dx/PngWriter.h"

#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

std::string WindowTitle(HWND window)
{
    char title[512] = "";
    GetWindowTextA(window, title, sizeof title);
    return title;
}

} // namespace

std::string FrameFileName(const std::string& windowTitle)
{
    std::string name = windowTitle.empty() ? "frame" : windowTitle;
    for (char& c : name)
        if (c == '/' || c == '\\' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '_';
    return name + ".png";
}

void WriteFrameFile(const PixelBuffer& picture, HWND window)
{
    const char* directory = std::getenv("QSA2QSB_FRAMES");
    if (!directory || !*directory)
        return;
    const std::string path = std::string(directory) + "/" + FrameFileName(WindowTitle(window));
    const std::size_t count = std::size_t{picture.width} * picture.height;
    const std::unique_ptr<std::uint32_t[]> argb(new (std::nothrow) std::uint32_t[count]);
    std::string reason = "out of memory";
    const bool written = argb &&
                         UnpackImage(*picture.format, picture.width, picture.height,
                                     picture.bytes.get(), picture.pitchBytes, argb.get()) &&
                         WritePngFile(path.c_str(), static_cast<int>(picture.width),
                                      static_cast<int>(picture.height), argb.get(), false, reason);
    if (!written)
        std::fprintf(stderr, "Frame not written to '%s': %s\n", path.c_str(), reason.c_str());
}
