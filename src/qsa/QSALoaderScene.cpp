#include "base/ParseNumber.h"
#include "gfx/KRE_Gfx.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"

namespace {

/// A colour component of 0 to 1 as a byte. QUIRK: components outside that range wrap; exporters
/// never write them, and existing scenes must keep their look.
uint32_t ColorByte(float part)
{
    return static_cast<uint32_t>(ToInt32(part * 255.0)) & 0xFF;
}

/// Reads red, green and blue into a colour and keeps its alpha.
void ReadPackedColor(QSA_SceneText& text, uint32_t* color)
{
    float parts[3];
    text.ReadVector(parts);
    *color = (*color & 0xFF000000) | ColorByte(parts[0]) << 16 | ColorByte(parts[1]) << 8 |
             ColorByte(parts[2]);
}

} // namespace

int32_t QSALoader::ParseScene(KRE_3dScene& scene, const QSA_LoadOptions& options)
{
    const int32_t result = ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::SceneBackgroundStatic:
            ReadPackedColor(*this, &scene.backgroundColor);
            break;
        case QSA_Token::SceneAmbientStatic:
            ReadPackedColor(*this, &scene.ambientColor);
            break;
        case QSA_Token::SceneFirstFrame:
            ReadInt(&time.firstFrame);
            break;
        case QSA_Token::SceneLastFrame:
            ReadInt(&time.lastFrame);
            break;
        case QSA_Token::SceneFrameSpeed:
            ReadFloat(&time.frameSpeed);
            header.frameSpeed = time.frameSpeed;
            break;
        case QSA_Token::SceneTicksPerFrame:
            ReadFloat(&time.ticksPerFrame);
            break;
        case QSA_Token::SceneEnvMap:
            SkipTo('{');
            return ParseEnvMap(scene, options);
        case QSA_Token::SceneSoundFile:
            ReadQuoted(&header.soundFile);
            break;
        case QSA_Token::SceneScriptFile:
            ReadQuoted(&header.scriptFile);
            break;
        default:
            break;
        }
        return 0;
    });
    UpdateTime();
    return result;
}

void QSALoader::UpdateTime()
{
    if (!time.Update())
        Warning("Scene without speed: %g frames a second, %g ticks a frame",
                static_cast<double>(time.frameSpeed), static_cast<double>(time.ticksPerFrame));
}

/// Looks the picture up once per block, however often the block names one.
int32_t QSALoader::ParseEnvMap(KRE_3dScene& scene, const QSA_LoadOptions& options)
{
    TokenBuffer name;
    bool isNamed = false;
    const int32_t result = ParseBlock([&](QSA_Token token) {
        if (token == QSA_Token::Bitmap && ReadQuoted(name) == 0)
            isNamed = true;
        return 0;
    });
    if (isNamed && !options.Has(kLoadNoTextures))
        LoadEnvironment(name, &scene.backgroundTexture, options);
    return result;
}

void QSALoader::LoadEnvironment(const char* name, KRE_Texture* texture,
                                const QSA_LoadOptions& options)
{
    String path;
    if (gGfx->FindTextureFile(&path, name, options.directory.c_str()))
        gGfx->LoadTexture(texture, path.c_str(), 0, -1, -1, options.MipLevels());
    else
        Warning("Can not open environment texture file %s", name);
    texture->slotNames[texture->currentSlot].Assign(name);
}

int32_t QSALoader::ParseAtmospheric(KRE_3dScene& scene)
{
    return ParseBlock([&](QSA_Token token) {
        if (token != QSA_Token::StdFog)
            return 0;
        SkipTo('{');
        return ParseStdFog(scene);
    });
}

int32_t QSALoader::ParseStdFog(KRE_3dScene& scene)
{
    scene.settings.useFog = 1;
    return ParseBlock([&](QSA_Token token) {
        if (token == QSA_Token::FogColor) {
            scene.settings.fogColor = 0xFF000000;
            ReadPackedColor(*this, &scene.settings.fogColor);
        }
        return 0;
    });
}
