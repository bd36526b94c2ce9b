// Sequences of pictures: a text file that names one picture in each line.

#include "gfx/KRE_Gfx.h"

#include "base/File.h"
#include "base/HeapArray.h"
#include "base/Paths.h"
#include "gfx/KRE_FrameList.h"
#include "gfx/KRE_TextureRequest.h"

/// All bytes of a file, `sizeOut` of them; none, with a warning, for one that cannot be opened.
static HeapArray<char> ReadWhole(const String& name, int32_t* sizeOut)
{
    File file;
    *sizeOut = 0;
    if (!file.Open(name.c_str(), true, false, true))
        return {};
    HeapArray<char> bytes = HeapArray<char>::Try(file.GetSize());
    if (!bytes)
        file.Error("Out of memory for %i bytes", file.GetSize());
    file.Read(bytes.Get(), file.GetSize());
    *sizeOut = file.GetSize();
    return bytes;
}

void KRE_Gfx::LoadFrameList(KRE_Texture& texture, const String& file,
                            const KRE_TextureRequest& request)
{
    int32_t size = 0;
    const HeapArray<char> text = ReadWhole(file, &size);
    const auto names = SplitFrameList({text.Get(), static_cast<size_t>(size)});
    if (names.empty())
        Error("Empty texture file list");
    String directory;
    SplitDirectory(file.c_str(), &directory);
    EnsureTrailingSlash(&directory);
    texture.CreateSequence(static_cast<int32_t>(names.size()), false);
    for (size_t i = 0; i < names.size(); ++i) {
        String name;
        name.Assign(names[i].data(), static_cast<int32_t>(names[i].size()));
        // A list in a list would take over the sequence that is being filled, and a list in itself
        // would never end.
        if (name.EndsWith(kFrameListExtension))
            Error("Texture file list %s names another list: %s", file.c_str(), name.c_str());
        texture.SelectFrame(static_cast<int32_t>(i));
        String path(name);
        if (!FileExists(path.c_str())) {
            path = directory;
            path.Append(name.c_str());
        }
        LoadTexture(&texture, path.c_str(), request.colorKey, request.mode, request.format,
                    request.mipLevels);
    }
}
