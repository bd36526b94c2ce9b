#include "platform/headless/d3dx/effect/FxSources.h"

#include <cstdio>
#include <memory>
#include <utility>

#include "platform/HostStream.h"
#include "platform/OpenFileStream.h"
#include "platform/headless/d3dx/effect/FxCompiledReader.h"
#include "platform/headless/d3dx/effect/FxLimits.h"

namespace headless::fx {

namespace {

struct StreamCloser {
    void operator()(FILE* stream) const { std::fclose(stream); }
};

bool IsAbsolute(const std::string& path)
{
    return path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
}

std::string Beside(const std::string& name, const std::string& neighbour)
{
    const size_t slash = neighbour.find_last_of("/\\");
    if (IsAbsolute(name) || slash == std::string::npos)
        return name;
    return neighbour.substr(0, slash + 1) + name;
}

} // namespace

FxSources::FxSources(ID3DXInclude* includeHandler, bool mayReadFiles)
    : handler(includeHandler),
      readsFiles(mayReadFiles)
{}

FxSources::~FxSources()
{
    while (!opened.empty()) {
        handler->Close(opened.back());
        opened.pop_back();
    }
}

const FxSourceText* FxSources::Add(std::string_view bytes)
{
    if (bytes.size() > kFxMaxFileBytes || bytes.size() > kFxMaxTextBytes - fileBytes)
        return nullptr;
    fileBytes += bytes.size();
    return &files.emplace_back(FxSourceText::FromFile(bytes));
}

std::optional<std::string_view> FxSources::Keep(std::string text)
{
    if (text.size() > kFxMaxTextBytes - madeBytes)
        return std::nullopt;
    madeBytes += text.size();
    return made.emplace_back(std::move(text));
}

HRESULT FxSources::ReadFile(const char* path, std::string& bytesOut)
{
    const std::unique_ptr<FILE, StreamCloser> stream(OpenFileStream(path, "rb"));
    if (!stream)
        return D3DXERR_INVALIDDATA;
    bytesOut.clear();
    char block[16384];
    while (const size_t count = ReadStream(stream.get(), block, sizeof block)) {
        bytesOut.append(block, count);
        if (bytesOut.size() > (FxIsCompiled(bytesOut) ? kFxMaxCompiledBytes : kFxMaxFileBytes))
            return D3DXERR_INVALIDDATA;
    }
    return std::ferror(stream.get()) != 0 ? D3DXERR_INVALIDDATA : D3D_OK;
}

bool FxSources::Include(const std::string& name, bool isSystem, const std::string& parentPath,
                        const void* parentData, Included& fileOut)
{
    if (handler)
        return IncludeByHandler(name, isSystem, parentData, fileOut);
    std::string bytes;
    fileOut.path = Beside(name, parentPath);
    if (!readsFiles || FAILED(ReadFile(fileOut.path.c_str(), bytes)))
        return false;
    fileOut.text = Add(bytes);
    return fileOut.text != nullptr;
}

bool FxSources::IncludeByHandler(const std::string& name, bool isSystem, const void* parentData,
                                 Included& fileOut)
{
    const void* data = nullptr;
    UINT size = 0;
    const D3DXINCLUDE_TYPE type = isSystem ? D3DXINC_SYSTEM : D3DXINC_LOCAL;
    if (FAILED(handler->Open(type, name.c_str(), parentData, &data, &size)))
        return false;
    opened.push_back(data);
    if (!data && size > 0)
        return false;
    fileOut.path = name;
    fileOut.data = data;
    fileOut.text = Add({static_cast<const char*>(data), size});
    return fileOut.text != nullptr;
}

} // namespace headless::fx
