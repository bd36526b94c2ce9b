#pragma once

#include <d3dx9.h>

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxLexer.h"

namespace headless::fx {

/// The texts of one effect: its files and what macros produce. Tokens point into them, so they must
/// outlive all tokens.
class FxSources {
public:
    /// `handler` (not owned, outlives this) answers `#include` if given. Without one, files are
    /// read if `readsFiles`; otherwise an effect cannot have includes.
    FxSources(ID3DXInclude* handler, bool readsFiles);
    ~FxSources();
    FxSources(const FxSources&) = delete;
    FxSources& operator=(const FxSources&) = delete;

    /// Null if the files together exceed the limit.
    const FxSourceText* Add(std::string_view bytes);
    /// Stores a text for a token that is in no file; none if there are too many.
    std::optional<std::string_view> Keep(std::string text);

    struct Included {
        std::string path;
        const void* data = nullptr; ///< the handler's data, passed as parent of nested includes
        const FxSourceText* text = nullptr;
    };
    /// Reads the file that an `#include` names. False if it cannot be read or is too long.
    bool Include(const std::string& name, bool isSystem, const std::string& parentPath,
                 const void* parentData, Included& fileOut);

    /// Reads a whole file of at most `kFxMaxFileBytes`. The start of a longer file is returned as
    /// well.
    static HRESULT ReadFile(const char* path, std::string& bytesOut);

private:
    bool IncludeByHandler(const std::string& name, bool isSystem, const void* parentData,
                          Included& fileOut);

    ID3DXInclude* handler;
    bool readsFiles;
    std::vector<const void*> opened; ///< opened by the handler, to be closed
    std::deque<FxSourceText> files;
    std::deque<std::string> made;
    size_t fileBytes = 0;
    size_t madeBytes = 0;
};

} // namespace headless::fx
