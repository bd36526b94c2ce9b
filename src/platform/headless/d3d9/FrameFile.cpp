#include "platform/headless/d3d9/FrameFile.h"

#include "platform/headless/d3dx/PngWriter.h"
#include "platform/headless/win32/FileInHand.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>

namespace headless {

namespace fs = std::filesystem;

namespace {

fs::path StartDirectory()
{
    std::error_code error;
    return fs::current_path(error);
}

/// The frame directory is relative to where the program was started, not to where it later moves.
const fs::path kStartDirectory = StartDirectory();

/// Empty if no frames are wanted.
const char* FrameDirectory()
{
    const char* wanted = std::getenv("QSA2QSB_FRAMES");
    return wanted ? wanted : "";
}

std::string WindowTitle(HWND window)
{
    char title[512] = "";
    GetWindowTextA(window, title, sizeof title);
    return title;
}

/// Looks a byte up in the ramp and rounds the 16 bits to 8; a straight ramp changes nothing.
uint32_t RampByte(const WORD (&channel)[256], uint32_t byte)
{
    return (channel[byte] + 128u) / 257u;
}

void ApplyRamp(const D3DGAMMARAMP& ramp, uint32_t* argb, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        argb[i] = (argb[i] & 0xFF000000) | RampByte(ramp.red, argb[i] >> 16 & 0xFF) << 16 |
                  RampByte(ramp.green, argb[i] >> 8 & 0xFF) << 8 |
                  RampByte(ramp.blue, argb[i] & 0xFF);
}

/// Replaces control bytes and those of `separators` by `_`.
std::string WithoutOddBytes(std::string name, const char* separators)
{
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F || std::strchr(separators, c))
            c = '_';
    return name;
}

} // namespace

std::string FrameFileName(const std::string& windowTitle)
{
    const std::string name = windowTitle.empty() ? "frame" : windowTitle;
    return WithoutOddBytes(name, "/\\") + ".png";
}

std::string FramePath(const std::string& below, const std::string& windowTitle)
{
    return WithoutOddBytes(below, "\\") + FrameFileName(windowTitle);
}

bool AreFramesKept()
{
    return *FrameDirectory() != '\0';
}

void WriteFrameFile(const PixelBuffer& picture, HWND window, const D3DGAMMARAMP* ramp)
{
    if (!AreFramesKept())
        return;
    const fs::path file = kStartDirectory / FrameDirectory() /
                          FramePath(DirectoriesBelowPattern(), WindowTitle(window));
    std::error_code ignored; // opening the file reports the failure
    fs::create_directories(file.parent_path(), ignored);
    const std::string path = file.string();
    const size_t count = size_t{picture.width} * picture.height;
    const std::unique_ptr<uint32_t[]> argb(new (std::nothrow) uint32_t[count]);
    const bool isRead = argb && UnpackImage(*picture.format, picture.width, picture.height,
                                            picture.bytes.get(), picture.pitchBytes, argb.get());
    if (isRead && ramp)
        ApplyRamp(*ramp, argb.get(), count);
    std::string reason = "out of memory";
    if (!isRead || !WritePngFile(path.c_str(), static_cast<int>(picture.width),
                                 static_cast<int>(picture.height), argb.get(), false, reason))
        std::fprintf(stderr, "Frame not written to '%s': %s\n", path.c_str(), reason.c_str());
}

} // namespace headless
