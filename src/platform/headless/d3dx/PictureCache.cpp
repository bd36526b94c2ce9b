#include "platform/headless/d3dx/PictureCache.h"

#include "platform/headless/d3d9/ZeroedBytes.h"

#include <new>
#include <utility>

namespace headless {

namespace {

constexpr size_t kLimitBytes = size_t{256} << 20;

std::new_handler gNextHandler = nullptr;

bool DropAll()
{
    return ProcessPictures().Drop(0);
}

/// With nothing left to drop, memory has run out for whoever was there before.
void DropAllOrFail()
{
    if (!DropAll())
        std::set_new_handler(gNextHandler);
}

/// Asks to be called when memory runs out, before anybody else.
void WatchMemory()
{
    gFreeSpareMemory = DropAll;
    if (std::get_new_handler() != DropAllOrFail)
        gNextHandler = std::set_new_handler(DropAllOrFail);
}

} // namespace

unsigned gDecodedPictures = 0;

PictureCache& ProcessPictures()
{
    static PictureCache pictures(kLimitBytes);
    return pictures;
}

KeptPicture* PictureCache::Find(const FileIdentity& identity)
{
    for (KeptPicture** link = &first; *link; link = &(*link)->next) {
        KeptPicture* found = *link;
        if (found->identity != identity)
            continue;
        *link = found->next;
        found->next = first;
        first = found;
        ++found->users;
        return found;
    }
    return nullptr;
}

KeptPicture* PictureCache::Keep(const FileIdentity& identity, ImageFileBytes& file,
                                DecodedImage& image)
{
    const size_t sizeBytes = image.memory ? image.StoredBytes() : file.Bytes().size();
    if (sizeBytes > limitBytes)
        return nullptr;
    Drop(limitBytes - sizeBytes);
    if (usedBytes > limitBytes - sizeBytes) // the others are being read
        return nullptr;
    auto* made = new (std::nothrow) KeptPicture();
    if (!made)
        return nullptr;
    made->identity = identity;
    if (!image.memory)
        made->file = std::move(file);
    made->image = std::move(image);
    made->sizeBytes = sizeBytes;
    made->users = 1;
    made->next = first;
    first = made;
    usedBytes += sizeBytes;
    return made;
}

/// The link to the last one that nobody reads; null without one.
KeptPicture** PictureCache::LastUnused()
{
    KeptPicture** last = nullptr;
    for (KeptPicture** link = &first; *link; link = &(*link)->next)
        if ((*link)->users == 0)
            last = link;
    return last;
}

bool PictureCache::Drop(size_t most)
{
    bool isAny = false;
    while (usedBytes > most) {
        KeptPicture** link = LastUnused();
        if (!link)
            break;
        KeptPicture* dropped = *link;
        *link = dropped->next;
        usedBytes -= dropped->sizeBytes;
        delete dropped;
        isAny = true;
    }
    return isAny;
}

PictureFile::~PictureFile()
{
    if (kept)
        --kept->users;
}

HRESULT PictureFile::Open(const char* path)
{
    if (const HRESULT result = file.Open(path); FAILED(result))
        return result;
    mayBeKept = file.Identify(identity);
    if (mayBeKept)
        kept = ProcessPictures().Find(identity);
    if (kept)
        return D3D_OK;
    FileIdentity after;
    const HRESULT result = file.ReadAll(after);
    mayBeKept = mayBeKept && after == identity; // else it changed while it was read
    given = file.Bytes();
    return result;
}

HRESULT PictureFile::Decode()
{
    if (kept)
        return D3D_OK;
    ++gDecodedPictures;
    HRESULT result = DecodeImage(given, image);
    if (result == E_OUTOFMEMORY &&
        DropAll()) // the libraries of some formats have memory of their own
        result = DecodeImage(given, image);
    if (SUCCEEDED(result) && mayBeKept)
        kept = ProcessPictures().Keep(identity, file, image);
    if (kept)
        WatchMemory();
    return result;
}

HRESULT PictureFile::ReadInfo(D3DXIMAGE_INFO& infoOut) const
{
    if (!kept)
        return ReadImageInfo(given, infoOut);
    infoOut = kept->image.info;
    return D3D_OK;
}

} // namespace headless
