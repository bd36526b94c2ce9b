#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "platform/headless/d3dx/ImageCodec.h"

namespace headless {

/// What tells whether a file is still the same with the same contents: any change of them moves the second
/// time, in nanoseconds, and nobody can set it.
struct FileIdentity {
    uint64_t device = 0;
    uint64_t index = 0;
    int64_t size = 0;
    int64_t written = 0;
    int64_t changed = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// The bytes of a whole file, read in one go.
class ImageFileBytes {
public:
    /// `D3DXERR_INVALIDDATA` if the file is missing, a directory, unreadable, empty or above 1 GiB.
    HRESULT Open(const char* path);
    /// Of the open file. False if it may change without its times telling: it was changed so recently that
    /// the next change may get the same time, or it is not a plain file.
    bool Identify(FileIdentity& identityOut) const;
    /// Reads the open file, asks for its identity again, and closes it. `E_OUTOFMEMORY` if it does not fit in
    /// memory.
    HRESULT ReadAll(FileIdentity& afterOut);
    /// `Open` and `ReadAll`.
    HRESULT Read(const char* path);

    ImageFile Bytes() const { return {bytes.get(), size}; }

private:
    struct StreamCloser {
        void operator()(FILE* opened) const { std::fclose(opened); }
    };

    std::unique_ptr<FILE, StreamCloser> stream;
    std::unique_ptr<uint8_t[]> bytes;
    size_t size = 0;
};

} // namespace headless
