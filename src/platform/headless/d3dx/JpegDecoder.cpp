#include "platform/headless/d3dx/ImageDecoders.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>

#include <jpeglib.h>

#include <jerror.h>

namespace headless {

namespace {

// A progressive file may repeat cheap passes over a large picture endlessly; real ones have about
// ten.
constexpr int kMaxScans = 100;

// All coefficients of a progressive picture stay in memory until its last pass; a picture that
// needs more than this many bytes is refused.
constexpr long kMaxWorkingBytes = 1L << 30;

// The warnings after which libjpeg continues with invented pixels.
const int kDamage[] = {
    JWRN_ARITH_BAD_CODE, JWRN_BOGUS_PROGRESSION, JWRN_HIT_MARKER,
    JWRN_HUFF_BAD_CODE,  JWRN_JPEG_EOF,          JWRN_MUST_RESYNC,
};

// Everything the decoder uses while libjpeg may longjmp out of it. The caller owns it, so that no
// destructor is skipped.
struct JpegReadState {
    jpeg_decompress_struct jpeg; // owned, destroyed by the caller
    jpeg_error_mgr errors;
    jpeg_progress_mgr progress;
    std::jmp_buf exit;
};

JpegReadState& StateOf(j_common_ptr jpeg)
{
    return *static_cast<JpegReadState*>(jpeg->client_data);
}

[[noreturn]] void OnJpegError(j_common_ptr jpeg)
{
    std::longjmp(StateOf(jpeg).exit, 1);
}

void OnMessage(j_common_ptr jpeg, int level)
{
    if (level >= 0)
        return;
    for (const int code : kDamage) {
        if (jpeg->err->msg_code == code)
            OnJpegError(jpeg);
    }
}

void OnProgress(j_common_ptr jpeg)
{
    if (StateOf(jpeg).jpeg.input_scan_number > kMaxScans)
        OnJpegError(jpeg);
}

// libjpeg exits by longjmp, so nothing in here has a destructor.
bool ReadHeader(JpegReadState& state, const uint8_t* data, size_t size)
{
    state.jpeg.err = jpeg_std_error(&state.errors);
    state.errors.error_exit = OnJpegError;
    state.errors.emit_message = OnMessage;
    state.progress.progress_monitor = OnProgress;
    if (setjmp(state.exit) != 0)
        return false;

    state.jpeg.client_data = &state;
    jpeg_create_decompress(&state.jpeg);
    state.jpeg.client_data = &state;
    state.jpeg.mem->max_memory_to_use = kMaxWorkingBytes;
    state.jpeg.progress = &state.progress;
    jpeg_mem_src(&state.jpeg, data, static_cast<unsigned long>(size));
    if (jpeg_read_header(&state.jpeg, TRUE) != JPEG_HEADER_OK)
        return false;

    const bool grey = state.jpeg.jpeg_color_space == JCS_GRAYSCALE;
    state.jpeg.out_color_space = grey ? JCS_GRAYSCALE : JCS_EXT_BGRA;
    return grey || state.jpeg.num_components == 3;
}

bool ReadPixels(JpegReadState& state, uint8_t* pixelsOut, size_t pitchBytes)
{
    if (setjmp(state.exit) != 0)
        return false;

    jpeg_start_decompress(&state.jpeg);
    while (state.jpeg.output_scanline < state.jpeg.output_height) {
        JSAMPROW row = pixelsOut + state.jpeg.output_scanline * pitchBytes;
        jpeg_read_scanlines(&state.jpeg, &row, 1);
    }
    jpeg_finish_decompress(&state.jpeg);
    return true;
}

// Every coded unit takes at least one bit.
bool FitsInFile(const jpeg_decompress_struct& jpeg, size_t fileSize)
{
    int unitWidth = DCTSIZE;
    int unitHeight = DCTSIZE;
    for (int i = 0; i < jpeg.num_components; ++i) {
        unitWidth = std::max(unitWidth, DCTSIZE * jpeg.comp_info[i].h_samp_factor);
        unitHeight = std::max(unitHeight, DCTSIZE * jpeg.comp_info[i].v_samp_factor);
    }
    const uint64_t across = jpeg.image_width / static_cast<unsigned>(unitWidth);
    const uint64_t down = jpeg.image_height / static_cast<unsigned>(unitHeight);
    return across * down <= uint64_t(fileSize) * 8;
}

HRESULT DecodeWith(JpegReadState& state, ImageFile file, bool infoOnly, DecodedImage& imageOut)
{
    if (!ReadHeader(state, file.data(), file.size()) ||
        !IsImageSize(state.jpeg.image_width, state.jpeg.image_height) ||
        !FitsInFile(state.jpeg, file.size()))
        return D3DXERR_INVALIDDATA;

    const bool grey = state.jpeg.out_color_space == JCS_GRAYSCALE;
    const D3DFORMAT format = grey ? D3DFMT_L8 : D3DFMT_X8R8G8B8;
    imageOut.info =
        PlainImageInfo(state.jpeg.image_width, state.jpeg.image_height, format, D3DXIFF_JPG);
    if (infoOnly)
        return D3D_OK;

    uint8_t* pixels = imageOut.Allocate(format);
    if (!pixels)
        return E_OUTOFMEMORY;
    return ReadPixels(state, pixels, imageOut.levels[0].pitchBytes) ? D3D_OK : D3DXERR_INVALIDDATA;
}

} // namespace

bool IsJpeg(ImageFile file)
{
    return file.size() >= 3 && file[0] == 0xFF && file[1] == 0xD8 && file[2] == 0xFF;
}

HRESULT DecodeJpeg(ImageFile file, bool infoOnly, DecodedImage& imageOut)
{
    JpegReadState state = {};
    const HRESULT result = DecodeWith(state, file, infoOnly, imageOut);
    jpeg_destroy_decompress(&state.jpeg);
    return result;
}

} // namespace headless
