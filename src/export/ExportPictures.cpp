#include "export/ExportPictures.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <unistd.h>

#include <d3dx9.h>

#include "base/Ascii.h"
#include "base/ReadWholeFile.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_Texture.h"
#include "info/LoadedScene.h"
#include "info/NameText.h"

namespace fs = std::filesystem;

namespace {

/// A file of a moment for the helper library, which saves to files only.
class PassingFile {
public:
    PassingFile()
    {
        const std::string form = (fs::temp_directory_path() / "qsbexport-XXXXXX").string();
        int file = -1;
        do {
            path = form;
            file = mkstemp(path.data());
        } while (file < 0 && errno == EINTR);
        if (file >= 0)
            close(file);
        else
            path.clear();
    }
    ~PassingFile()
    {
        if (!path.empty())
            unlink(path.c_str()); // needs no memory
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;

    std::string path; ///< empty if there is none
};

const char* MimeTypeOf(const std::string& bytes)
{
    if (bytes.compare(0, 8, "\x89PNG\r\n\x1a\n") == 0)
        return "image/png";
    return bytes.compare(0, 3, "\xFF\xD8\xFF") == 0 ? "image/jpeg" : nullptr;
}

std::string PngOf(IDirect3DTexture9* texture)
{
    ComPointer<IDirect3DSurface9> surface;
    const PassingFile file;
    if (!texture || FAILED(texture->GetSurfaceLevel(0, surface.Out())) || file.path.empty())
        return "";
    const HRESULT result =
        D3DXSaveSurfaceToFileA(file.path.c_str(), D3DXIFF_PNG, surface.Get(), nullptr, nullptr);
    std::string bytes;
    if (SUCCEEDED(result))
        ReadWholeFile(file.path, bytes);
    return bytes;
}

/// The picture in a file in its own size: the one that the engine uses may have been enlarged.
std::string PngOfFile(const std::string& path)
{
    ComPointer<IDirect3DTexture9> texture;
    const HRESULT result = D3DXCreateTextureFromFileExA(
        gGfx->device.Get(), path.c_str(), D3DX_DEFAULT_NONPOW2, D3DX_DEFAULT_NONPOW2, 1, 0,
        D3DFMT_UNKNOWN, D3DPOOL_SCRATCH, D3DX_FILTER_NONE, D3DX_FILTER_NONE, 0, nullptr, nullptr,
        texture.Out());
    return SUCCEEDED(result) ? PngOf(texture.Get()) : "";
}

std::string PictureBytes(const KRE_Texture& texture, int slot, const std::string& path)
{
    if (texture.sequenceCount > 0)
        return PngOf(texture.frames[0]);
    std::string bytes;
    ReadWholeFile(path, bytes); // none has no type
    if (MimeTypeOf(bytes))
        return bytes;
    const std::string converted = PngOfFile(path);
    return converted.empty() ? PngOf(texture.slotTextures[slot]) : converted;
}

} // namespace

int ExportPictures::ImageOf(const KRE_Texture& texture, int slot)
{
    const std::string name = texture.slotNames[slot].c_str();
    if (name.empty())
        return -1;
    const auto found = images.find(name);
    if (found != images.end())
        return found->second;
    return images[name] = Add(texture, slot, name);
}

int ExportPictures::Add(const KRE_Texture& texture, int slot, const std::string& name)
{
    const std::string bytes = PictureBytes(texture, slot, loaded.FindTexture(name.c_str()));
    const char* mimeType = MimeTypeOf(bytes);
    if (!mimeType) {
        notices.Add("pictures are missing");
        return -1;
    }
    const std::string leaf = FreeLeaf(name, mimeType[6] == 'p' ? ".png" : ".jpg");
    nlohmann::json image = {{"name", Utf8Name(leaf)}};
    if (embeds) {
        image["mimeType"] = mimeType;
        image["bufferView"] =
            writer.AddView({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
    } else {
        image["uri"] = UriOf(leaf);
        writer.AddFile(leaf, bytes);
    }
    return writer.Append("images", std::move(image));
}

/// The picture's own leaf with the extension of its kind; numbered if it is taken.
std::string ExportPictures::FreeLeaf(const std::string& name, const char* extension)
{
    const std::string leaf = name.substr(name.find_last_of("/\\:") + 1);
    const std::string stem = leaf.substr(0, leaf.find_last_of('.'));
    std::string free = stem + extension;
    const auto lower = [](std::string text) {
        for (char& byte : text)
            byte = static_cast<char>(ToLowerAscii(byte));
        return text;
    };
    for (int number = 2; !leaves.insert(lower(free)).second; ++number)
        free = stem + "-" + std::to_string(number) + extension;
    return free;
}
