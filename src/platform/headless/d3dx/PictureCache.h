#pragma once

#include "platform/headless/d3dx/ImageFileBytes.h"

namespace headless {

/// A decoded picture that is kept. Its levels may point into the file's bytes.
struct KeptPicture {
    FileIdentity identity;
    ImageFileBytes file; ///< empty if no level points into it
    DecodedImage image;
    size_t sizeBytes = 0;
    int users = 0; ///< it stays as long as somebody reads it
    KeptPicture* next = nullptr;
};

/// Decoded pictures by the file they came from, the latest used first. The least recently used are dropped
/// to keep within the limit, and all that nobody reads when memory runs out: whoever asks for memory gets it as
/// if nothing had been kept.
class PictureCache {
public:
    explicit PictureCache(size_t limit) : limitBytes(limit) {}
    ~PictureCache() { Drop(0); }
    PictureCache(const PictureCache&) = delete;
    PictureCache& operator=(const PictureCache&) = delete;

    /// Null if the picture of this very file is not kept. The caller becomes a user.
    KeptPicture* Find(const FileIdentity& identity);
    /// Takes the picture over and makes the caller a user. Null if it alone is above the limit or there is no
    /// memory to remember it; then it is left as it was.
    KeptPicture* Keep(const FileIdentity& identity, ImageFileBytes& file, DecodedImage& image);
    /// Drops the least recently used ones that nobody reads until at most `most` bytes are left. Returns
    /// whether any was dropped.
    bool Drop(size_t most);

    size_t UsedBytes() const { return usedBytes; }
    void SetLimit(size_t limit) { limitBytes = limit; }
    size_t Limit() const { return limitBytes; }

private:
    KeptPicture** LastUnused();

    KeptPicture* first = nullptr; ///< owned, as are those that follow
    size_t usedBytes = 0;
    size_t limitBytes;
};

/// The pictures of this process: all textures of all its scenes.
PictureCache& ProcessPictures();

/// Pictures decoded so far; tests count them.
extern unsigned gDecodedPictures;

/// A picture file to be loaded: read and decoded, or found decoded.
class PictureFile {
public:
    PictureFile() = default;
    ~PictureFile();
    PictureFile(const PictureFile&) = delete;
    PictureFile& operator=(const PictureFile&) = delete;

    /// See `ImageFileBytes` for failures.
    HRESULT Open(const char* path);
    /// A picture in memory, which outlives this; it is not kept.
    void Use(ImageFile bytes) { given = bytes; }
    /// See `DecodeImage` and `ReadImageInfo` for failures.
    HRESULT Decode();
    HRESULT ReadInfo(D3DXIMAGE_INFO& infoOut) const;

    const DecodedImage& Image() const { return kept ? kept->image : image; }

private:
    ImageFileBytes file;
    ImageFile given;
    DecodedImage image;
    FileIdentity identity;
    bool mayBeKept = false;
    KeptPicture* kept = nullptr; ///< this is a user of it
};

} // namespace headless
