#include "platform/EffectCompiler.h"

#include "platform/headless/d3dx/effect/FxCompiledReader.h"
#include "platform/headless/d3dx/effect/FxCompiledWriter.h"
#include "platform/headless/d3dx/effect/FxParser.h"
#include "platform/headless/d3dx/effect/FxPreprocessor.h"

using namespace headless::fx;

/// Shaders that the compiler would not know make the effect useless elsewhere, so they are faults here.
std::string CompileEffect(const std::string& path, std::string& compiledOut)
{
    FxDiagnostics diagnostics;
    FxModel model;
    FxSources sources(nullptr, true);
    FxPreprocessor preprocessor(sources, diagnostics);
    std::string bytes;
    if (FAILED(FxSources::ReadFile(path.c_str(), bytes)))
        return "it cannot be read, or is larger than any effect";
    if (FxIsCompiled(bytes))
        return "it is compiled already";
    std::vector<FxToken> words;
    if (!preprocessor.Define(nullptr) || !preprocessor.Run(path, bytes, words) ||
        !FxParser(std::move(words), diagnostics, nullptr, model).Run()) {
        std::string text = diagnostics.Text();
        text.resize(text.find_last_not_of('\n') + 1);
        return text;
    }
    std::string reason;
    FxCompiledWriter(model).Write(compiledOut, reason);
    return reason;
}
