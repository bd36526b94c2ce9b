#include "platform/EffectListing.h"

#include "platform/headless/d3dx/effect/FxCompiledReader.h"
#include "platform/headless/d3dx/effect/FxListing.h"

using namespace headless::fx;

bool IsCompiledEffect(std::string_view bytes)
{
    return FxIsCompiled(bytes);
}

std::string ListEffect(const std::string& name, std::string_view bytes, std::string& listingOut)
{
    FxDiagnostics diagnostics;
    FxModel model;
    const FxPlace start = {diagnostics.AddFile(name), 1, 1};
    if (!FxCompiledReader(bytes, start, diagnostics, nullptr, model).Run()) {
        std::string text = diagnostics.Text();
        text.resize(text.find_last_not_of('\n') + 1);
        return text;
    }
    return FxListing(model).Write(listingOut) ? "" : "its listing is longer than 64 MiB";
}
