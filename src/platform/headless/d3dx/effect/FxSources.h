#pragma once

#include <d3dx9.h>

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxLexer.h"

namespace headless::fx {

/// The texts of one effect: its files and what macros put together. Tokens point into them, so they
/// live as long as any token.
class FxSources {
public:
    /// `handler` answers `#include` if given (not owned, outlives this). Without one, files are read if
    /// `readsFiles`; else an effect has no includes.
    FxSources(ID3DXInclude* handler, bool readsFiles);
    ~FxSources();
    FxSources(const FxSources&) = delete;
    FxSources& operator=(const FxSources&) = delete;

    /// Null if all files together would be too long.
    const FxSourceText* Add(std::string_view bytes);
    /// A text of its own, for a token that no file holds; none if there are too many.
    std::optional<std::string_view> Keep(std::string text);

    struct Included {
        std::string path;
        const void* data = nullptr; ///< the handler's, which tells it who includes the next file
        const FxSourceText* text = nullptr;
    };
    /// Reads what an `#include` names. False if it cannot be read or is too long.
    bool Include(const std::string& name, bool isSystem, const std::string& parentPath,
                 const void* parentData, Included& fileOut);

    /// A whole file, at most `kFxMaxFileBytes`. What was read of a longer one is given as well.
    static HRESULT ReadFile(const char* path, std::string& bytesOut);

private:
    bool IncludeByHandler(const std::string& name, bool isSystem, const void* parentData,
                          Included& fileOut);

    ID3DXInclude* handler;
    bool readsFiles;
    std::vector<const void*> opened; ///< by the handler, to be closed
    std::deque<FxSourceText> files;
    std::deque<std::string> made;
    std::size_t fileBytes = 0;
    std::size_t madeBytes = 0;
};

} // namespace headless::fx
