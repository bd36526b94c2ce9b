#include "platform/headless/d3dx/ImageDecoders.h"

#include <cstring>

#include <png.h>

namespace headless {

namespace {

// Deflate shrinks 258 bytes to 2 bits at the very best.
constexpr uint64_t kMaxDeflateRatio = 1032;

// Everything the decoder uses while libpng may longjmp out of it. The caller owns it, so that no
// destructor is skipped.
struct PngReadState {
    const uint8_t* next; // not owned
    size_t left;
    png_structp png; // owned, destroyed by the caller
    png_infop info;  // owned, destroyed with `png`
    png_uint_32 width;
    png_uint_32 height;
    int bitDepth;
    int colourType;
    bool hasTransparency;
    int passes;
};

[[noreturn]] void OnReadError(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void OnReadWarning(png_structp, png_const_charp)
{}

void OnRead(png_structp png, png_bytep bytesOut, size_t size)
{
    auto* state = static_cast<PngReadState*>(png_get_io_ptr(png));
    if (size > state->left)
        png_error(png, "file ends early");
    std::memcpy(bytesOut, state->next, size);
    state->next += size;
    state->left -= size;
}

// libpng exits by longjmp, so nothing in here has a destructor.
bool ReadHeader(PngReadState& state)
{
    state.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, OnReadError, OnReadWarning);
    if (!state.png)
        return false;
    state.info = png_create_info_struct(state.png);
    if (!state.info || setjmp(png_jmpbuf(state.png)) != 0)
        return false;

    png_set_read_fn(state.png, &state, OnRead);
    png_set_user_limits(state.png, kMaxImageSide, kMaxImageSide);
    png_set_crc_action(state.png, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
    // Comments, profiles and the like can expand to large sizes, and are not needed.
    png_set_keep_unknown_chunks(state.png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(state.png, state.info);
    png_get_IHDR(state.png, state.info, &state.width, &state.height, &state.bitDepth,
                 &state.colourType, nullptr, nullptr, nullptr);
    state.hasTransparency = png_get_valid(state.png, state.info, PNG_INFO_tRNS) != 0;
    return true;
}

bool IsPlainGrey(const PngReadState& state)
{
    return state.colourType == PNG_COLOR_TYPE_GRAY && !state.hasTransparency;
}

// Converts every kind to 8-bit grey, or to blue, green, red, alpha.
void SetTransforms(png_structp png, const PngReadState& state)
{
    png_set_strip_16(png);
    png_set_expand(png);
    if (!IsPlainGrey(state)) {
        png_set_gray_to_rgb(png);
        png_set_bgr(png);
        png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    }
}

bool ReadPixels(PngReadState& state, uint8_t* pixelsOut, size_t pitchBytes)
{
    if (setjmp(png_jmpbuf(state.png)) != 0)
        return false;

    SetTransforms(state.png, state);
    state.passes = png_set_interlace_handling(state.png);
    png_read_update_info(state.png, state.info);
    if (png_get_rowbytes(state.png, state.info) != pitchBytes)
        return false;
    for (int pass = 0; pass < state.passes; ++pass) {
        for (png_uint_32 y = 0; y < state.height; ++y)
            png_read_row(state.png, pixelsOut + y * pitchBytes, nullptr);
    }
    // Reads to the end chunk: a file without it is truncated.
    png_read_end(state.png, nullptr);
    return true;
}

bool FitsInFile(const PngReadState& state, size_t fileSize)
{
    const uint64_t rowBytes = (png_get_rowbytes(state.png, state.info)) + 1;
    return rowBytes * state.height <= kMaxDeflateRatio * fileSize;
}

D3DFORMAT ReportedFormat(const PngReadState& state)
{
    if (state.colourType == PNG_COLOR_TYPE_PALETTE)
        return D3DFMT_P8;
    if (IsPlainGrey(state))
        return D3DFMT_L8;
    const bool hasAlpha = state.hasTransparency || (state.colourType & PNG_COLOR_MASK_ALPHA) != 0;
    return hasAlpha ? D3DFMT_A8R8G8B8 : D3DFMT_X8R8G8B8;
}

HRESULT DecodeWith(PngReadState& state, size_t fileSize, bool infoOnly, DecodedImage& imageOut)
{
    if (!ReadHeader(state) || !IsImageSize(state.width, state.height) ||
        !FitsInFile(state, fileSize))
        return D3DXERR_INVALIDDATA;

    const D3DFORMAT reported = ReportedFormat(state);
    imageOut.info = PlainImageInfo(state.width, state.height, reported, D3DXIFF_PNG);
    if (infoOnly)
        return D3D_OK;

    uint8_t* pixels = imageOut.Allocate(reported == D3DFMT_P8 ? D3DFMT_A8R8G8B8 : reported);
    if (!pixels)
        return E_OUTOFMEMORY;
    return ReadPixels(state, pixels, imageOut.levels[0].pitchBytes) ? D3D_OK : D3DXERR_INVALIDDATA;
}

} // namespace

bool IsPng(ImageFile file)
{
    return file.size() >= 8 && png_sig_cmp(file.data(), 0, 8) == 0;
}

HRESULT DecodePng(ImageFile file, bool infoOnly, DecodedImage& imageOut)
{
    PngReadState state = {};
    state.next = file.data();
    state.left = file.size();
    const HRESULT result = DecodeWith(state, file.size(), infoOnly, imageOut);
    png_destroy_read_struct(&state.png, &state.info, nullptr);
    return result;
}

} // namespace headless
