// Which technique of an effect a material is drawn with, and why the ones before it do not run.

#include <map>
#include <memory>

#include "base/KRE_Base.h"
#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_ShaderEffect.h"
#include "info/NameText.h"
#include "info/Report.h"
#include "platform/EffectFault.h"

namespace {

std::string ProfileText(const char* kind, const DWORD* function)
{
    if (!function)
        return "";
    const DWORD version = *function; // major and minor number are its lower two bytes
    return std::string(kind) + "_" + std::to_string(version >> 8 & 0xFF) + "_" +
           std::to_string(version & 0xFF);
}

/// The profiles of the shaders that a technique has, for hosts that give no reason.
std::string ShadersOf(ID3DXEffect& effect, D3DXHANDLE technique, int32_t passCount)
{
    std::string text;
    for (UINT i = 0; i < static_cast<UINT>(passCount); ++i) {
        D3DXPASS_DESC pass{};
        if (FAILED(effect.GetPassDesc(effect.GetPass(technique, i), &pass)))
            continue;
        for (const std::string& profile : {ProfileText("vs", pass.pVertexShaderFunction),
                                           ProfileText("ps", pass.pPixelShaderFunction)}) {
            if (!profile.empty())
                text += (text.empty() ? "" : ", ") + profile;
        }
    }
    return text;
}

std::string NameOf(ID3DXEffect& effect, D3DXHANDLE technique, int32_t index)
{
    D3DXTECHNIQUE_DESC description{};
    const bool isTold = SUCCEEDED(effect.GetTechniqueDesc(technique, &description));
    const bool isNamed = isTold && description.Name && description.Name[0] != 0;
    return "technique " + std::to_string(index + 1) +
           (isNamed ? " " + QuotedName(description.Name) : "");
}

/// Returns why a technique does not run here.
std::string FaultOf(ID3DXEffect& effect, const EffectTechnique& technique)
{
    const std::string fault = EffectFault(effect, technique.handle);
    if (!fault.empty())
        return ShownName(fault);
    const HRESULT result = effect.ValidateTechnique(technique.handle);
    const std::string shaders = ShadersOf(effect, technique.handle, technique.passCount);
    return "the device says " + std::string(DirectXErrorName(result)) +
           (shaders.empty() ? "" : ", shaders " + shaders);
}

using Lines = std::vector<std::string>;

/// The lines about an effect: its technique first, then why each one before it does not run.
Lines TellEffect(const KRE_ShaderEffect& effect)
{
    const ShaderEffectData& data = *effect.data;
    ID3DXEffect& file = *data.effect.Get();
    const bool isUsable = effect.IsUsable();
    const auto nameOf = [&](int32_t index) {
        return NameOf(file, data.techniques[static_cast<size_t>(index)].handle, index);
    };
    Lines lines = {isUsable
                       ? nameOf(effect.technique) + " of " + std::to_string(data.techniqueCount)
                       : "no technique; drawn without the effect"};
    const int32_t refused = isUsable ? effect.technique : data.techniqueCount;
    for (int32_t i = 0; i < refused; ++i)
        lines.push_back("not " + nameOf(i) + ": " +
                        FaultOf(file, data.techniques[static_cast<size_t>(i)]));
    if (isUsable)
        for (const std::string& warning :
             EffectWarnings(file, data.techniques[static_cast<size_t>(effect.technique)].handle))
            lines.push_back(ShownName(warning));
    const std::string whole = EffectFault(file, nullptr);
    if (!whole.empty())
        lines.push_back(ShownName(whole));
    return lines;
}

Lines LoadAndTell(const LoadedScene& loaded, const char* name)
{
    const std::string path = loaded.FindEffect(name);
    if (path.empty())
        return {"MISSING; drawn without the effect"};
    KRE_ShaderEffect effect;
    try {
        gGfx->LoadEffect(&effect, path.c_str(), false, 0, true);
        return TellEffect(effect);
    } catch (const KRE_Error& error) {
        return {"ends a conversion: " + ShownName(error.message)};
    }
}

} // namespace

void PrintEffects(LoadedScene& loaded, Output& output)
{
    std::map<std::string, Lines> known; // by name, since materials share their effects
    output.Line({ShownName(loaded.path)});
    for (KRE_Mesh* mesh : loaded.scene.meshes) {
        for (int32_t i = 0; i < mesh->materialCount; ++i) {
            const String& name = mesh->materials[i].effectParams.name;
            if (name.IsEmpty())
                continue;
            const auto place = known.try_emplace(name.c_str());
            Lines& lines = place.first->second;
            if (place.second)
                lines = LoadAndTell(loaded, name.c_str());
            output.Line({"  ", ShownName(mesh->name.c_str()), " materials[", std::to_string(i),
                         "]: ", ShownName(name.c_str()), ": ", lines.front()});
            for (size_t line = 1; line < lines.size(); ++line)
                output.Line({"      ", lines[line]});
        }
    }
    if (known.empty())
        output.Line({"  no material names an effect"});
}
