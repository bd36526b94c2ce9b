// The compiler of the shading language: an effect of 300 lines, as studios write them.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "platform/headless/d3dx/effect/FxPreprocessor.h"
#include "platform/headless/d3dx/language/HlCompiler.h"

using namespace headless;

namespace {

/// 15 materials of 20 lines each, with a skinned vertex shader and a lit pixel shader.
std::string LongEffect()
{
    std::string text;
    for (int i = 0; i < 15; ++i) {
        const std::string n = std::to_string(i);
        text += "float4x4 wvp" + n + "; float4x3 bones" + n +
                "[20];\n"
                "float4 colour" +
                n +
                " = {1, 1, 1, 1};\n"
                "float3 lights" +
                n +
                "[4];\n"
                "texture wall" +
                n +
                ";\n"
                "sampler2D s" +
                n + " = sampler_state { Texture = <wall" + n +
                ">; };\n"
                "struct Out" +
                n +
                " { float4 p : POSITION; float3 n : TEXCOORD0; float2 t : TEXCOORD1; };\n"
                "Out" +
                n + " v" + n +
                "(float4 p : POSITION, float3 n : NORMAL, float4 w : BLENDWEIGHT,\n"
                "        float4 i : BLENDINDICES, float2 t : TEXCOORD0) {\n"
                "    Out" +
                n +
                " o; float3 q = 0; o.n = 0;\n"
                "    for (int k = 0; k < 4; k++) {\n"
                "        q += mul(p, bones" +
                n +
                "[i[k]]) * w[k];\n"
                "        o.n += mul(n, (float3x3)bones" +
                n +
                "[i[k]]) * w[k];\n"
                "    }\n"
                "    o.p = mul(float4(q, 1), wvp" +
                n +
                "); o.t = t; return o;\n"
                "}\n"
                "float4 p" +
                n + "(Out" + n +
                " i) : COLOR {\n"
                "    float3 sum = 0; float3 n = normalize(i.n);\n"
                "    for (int k = 0; k < 4; k++) sum += pow(saturate(dot(n, lights" +
                n +
                "[k])), 8);\n"
                "    return float4(sum, 1) * colour" +
                n + " * tex2D(s" + n +
                ", i.t);\n"
                "}\n";
    }
    return text;
}

void CompileShaders(benchmark::State& state)
{
    std::string text = LongEffect();
    for (int i = 0; i < 15; ++i)
        text += "compile vs_2_0 v" + std::to_string(i) + "() compile ps_2_0 p" + std::to_string(i) +
                "()\n";
    for (auto _ : state) {
        fx::FxDiagnostics diagnostics;
        fx::FxSources sources(nullptr, false);
        fx::FxPreprocessor preprocessor(sources, diagnostics);
        std::vector<fx::FxToken> words;
        if (!preprocessor.Define(nullptr) || !preprocessor.Run("a.fx", text, words))
            state.SkipWithError("the text is refused");
        hl::HlCompiler compiler(words);
        for (size_t i = 0; i + 3 < words.size(); ++i)
            if (words[i].Is("compile") &&
                !compiler.Compile(words[i + 1], words[i + 2], i + 3)->IsMade())
                state.SkipWithError("a shader is refused");
    }
}

BENCHMARK(CompileShaders)->Unit(benchmark::kMillisecond);

} // namespace
