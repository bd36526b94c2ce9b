#include "platform/headless/d3dx/BmpWriter.h"

#include "platform/LittleEndian.h"
#include "platform/headless/d3dx/TemporaryFile.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace headless {

namespace {

constexpr size_t kBmpHeaderSize = 54;

void StoreU32(uint8_t* out, size_t value)
{
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<uint8_t>(value >> (8 * i));
}

bool WriteHeader(FILE* stream, size_t width, size_t height, size_t pixelBytes, size_t rowBytes)
{
    uint8_t header[kBmpHeaderSize] = {'B', 'M'};
    StoreU32(header + 2, kBmpHeaderSize + rowBytes * height);
    StoreU32(header + 10, kBmpHeaderSize);
    StoreU32(header + 14, 40);
    StoreU32(header + 18, width);
    StoreU32(header + 22, height);
    header[26] = 1; // planes
    header[28] = static_cast<uint8_t>(pixelBytes * 8);
    StoreU32(header + 34, rowBytes * height);
    return std::fwrite(header, 1, kBmpHeaderSize, stream) == kBmpHeaderSize;
}

} // namespace

bool WriteBmpFile(const char* path, int width, int height, const uint32_t* argb, bool withAlpha)
{
    const auto columns = static_cast<size_t>(width);
    const auto rows = static_cast<size_t>(height);
    const size_t pixelBytes = withAlpha ? 4 : 3;
    const size_t rowBytes = (columns * pixelBytes + 3) / 4 * 4;
    const std::unique_ptr<uint8_t[]> row(new (std::nothrow) uint8_t[rowBytes]());
    TemporaryFile file(path);
    if (!row || !file.Stream() || !WriteHeader(file.Stream(), columns, rows, pixelBytes, rowBytes))
        return false;

    for (size_t y = rows; y-- > 0;) { // the bottom row comes first
        for (size_t x = 0; x < columns; ++x) {
            uint8_t pixel[4];
            StoreLittle(pixel, argb[y * columns + x]);
            std::memcpy(row.get() + x * pixelBytes, pixel, pixelBytes);
        }
        if (std::fwrite(row.get(), 1, rowBytes, file.Stream()) != rowBytes)
            return false;
    }
    return file.Commit();
}

} // namespace headless
