#include "platform/headless/d3dx/ImageFileBytes.h"

#include "platform/OpenFileStream.h"

#include <cstdio>
#include <new>

namespace headless {

namespace {

constexpr long kMaxFileSize = 1L << 30;

struct StreamCloser {
    void operator()(FILE* stream) const { std::fclose(stream); }
};

} // namespace

HRESULT ImageFileBytes::Read(const char* path)
{
    const std::unique_ptr<FILE, StreamCloser> stream(OpenFileStream(path, "rb"));
    if (!stream || std::fseek(stream.get(), 0, SEEK_END) != 0)
        return D3DXERR_INVALIDDATA;
    const long end = std::ftell(stream.get());
    if (end <= 0 || end > kMaxFileSize || std::fseek(stream.get(), 0, SEEK_SET) != 0)
        return D3DXERR_INVALIDDATA;

    size = static_cast<size_t>(end);
    bytes.reset(new (std::nothrow) uint8_t[size]);
    if (!bytes)
        return E_OUTOFMEMORY;
    return std::fread(bytes.get(), 1, size, stream.get()) == size ? D3D_OK : D3DXERR_INVALIDDATA;
}

} // namespace headless
