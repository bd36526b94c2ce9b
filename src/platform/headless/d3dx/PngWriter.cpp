#include "platform/headless/d3dx/PngWriter.h"

#include "platform/headless/d3dx/TemporaryFile.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

#include <png.h>

namespace headless {

namespace {

constexpr int kMaxSide = 16384;

// Everything the encoder uses while libpng may longjmp out of it. The caller owns it, so that no
// destructor is skipped.
struct PngWriteState {
    FILE* stream;    // not owned
    png_structp png; // owned, destroyed by the caller
    png_infop info;  // owned, destroyed with `png`
    uint8_t* row;    // not owned, one packed row
    const uint32_t* argb;
    int width;
    int height;
    bool withAlpha;
    char message[128];
};

void OnWriteError(png_structp png, png_const_charp message)
{
    auto* state = static_cast<PngWriteState*>(png_get_error_ptr(png));
    std::strncpy(state->message, message, sizeof state->message - 1);
    png_longjmp(png, 1);
}

void OnWriteWarning(png_structp, png_const_charp)
{}

void PackRow(const uint32_t* pixels, int width, bool withAlpha, uint8_t* rowOut)
{
    for (int x = 0; x < width; ++x) {
        const uint32_t pixel = pixels[x];
        *rowOut++ = static_cast<uint8_t>(pixel >> 16);
        *rowOut++ = static_cast<uint8_t>(pixel >> 8);
        *rowOut++ = static_cast<uint8_t>(pixel);
        if (withAlpha)
            *rowOut++ = static_cast<uint8_t>(pixel >> 24);
    }
}

// libpng exits by longjmp, so nothing in here has a destructor.
bool Encode(PngWriteState& state)
{
    state.png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, &state, OnWriteError, OnWriteWarning);
    if (!state.png)
        return false;
    state.info = png_create_info_struct(state.png);
    if (!state.info || setjmp(png_jmpbuf(state.png)) != 0)
        return false;

    png_init_io(state.png, state.stream);
    // One fixed filter and level: most frames consist of flat colours, and the bytes must not
    // depend on libpng's heuristics. Level 6 saves a seventh of the bytes for five times the time,
    // which is more than drawing the frame takes.
    png_set_filter(state.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_set_compression_level(state.png, 1);
    png_set_IHDR(state.png, state.info, static_cast<png_uint_32>(state.width),
                 static_cast<png_uint_32>(state.height), 8,
                 state.withAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(state.png, state.info);
    for (int y = 0; y < state.height; ++y) {
        PackRow(state.argb + static_cast<size_t>(y) * static_cast<size_t>(state.width), state.width,
                state.withAlpha, state.row);
        png_write_row(state.png, state.row);
    }
    png_write_end(state.png, state.info);
    return true;
}

bool IsPictureSize(int width, int height)
{
    return width >= 1 && height >= 1 && width <= kMaxSide && height <= kMaxSide;
}

} // namespace

bool WritePngStream(FILE* stream, int width, int height, const uint32_t* argb, bool withAlpha,
                    std::string& errorOut)
{
    if (!argb || !IsPictureSize(width, height)) {
        errorOut = "not a picture of 1 to 16384 pixels a side";
        return false;
    }
    std::unique_ptr<uint8_t[]> row(new (std::nothrow) uint8_t[static_cast<size_t>(width) * 4]);
    if (!row) {
        errorOut = "out of memory";
        return false;
    }

    PngWriteState state = {stream, nullptr, nullptr, row.get(), argb, width, height, withAlpha, {}};
    const bool encoded = Encode(state);
    png_destroy_write_struct(&state.png, &state.info);
    if (!encoded) {
        errorOut = state.message[0] ? state.message : "out of memory";
        return false;
    }
    return true;
}

bool WritePngFile(const char* path, int width, int height, const uint32_t* argb, bool withAlpha,
                  std::string& errorOut)
{
    if (!path || !IsPictureSize(width, height)) {
        errorOut = "not a picture of 1 to 16384 pixels a side";
        return false;
    }
    TemporaryFile file(path);
    if (!file.Stream()) {
        errorOut = std::strerror(errno);
        return false;
    }
    if (!WritePngStream(file.Stream(), width, height, argb, withAlpha, errorOut))
        return false;
    if (!file.Commit()) {
        errorOut = "the file cannot be written or renamed";
        return false;
    }
    return true;
}

} // namespace headless
