#include "base/ParseNumber.h"
#include "gfx/KRE_Gfx.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"

namespace {

/// One colour part of 0 to 1 as a byte. QUIRK: parts outside that range wrap; exporters never write
/// them, and scenes in use must not change their look.
uint32_t ColourByte(float part)
{
    return static_cast<uint32_t>(ToInt32(part * 255.0)) & 0xFF;
}

} // namespace

/// Reads red, green and blue into a colour and leaves its alpha.
void QSALoader::ReadColour(uint32_t* colour)
{
    float parts[3];
    ReadVector(parts);
    *colour = (*colour & 0xFF000000) | ColourByte(parts[0]) << 16 | ColourByte(parts[1]) << 8 |
              ColourByte(parts[2]);
}

int32_t QSALoader::ParseScene()
{
    return ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::SceneBackgroundStatic:
            ReadColour(&scene->backgroundColor);
            break;
        case QSA_Token::SceneAmbientStatic:
            ReadColour(&scene->ambientColor);
            break;
        case QSA_Token::SceneFirstFrame:
            ReadInt(&firstFrame);
            break;
        case QSA_Token::SceneLastFrame:
            ReadInt(&lastFrame);
            break;
        case QSA_Token::SceneFrameSpeed:
            ReadFloat(&frameSpeed);
            header.frameSpeed = frameSpeed;
            break;
        case QSA_Token::SceneTicksPerFrame:
            ReadFloat(&ticksPerFrame);
            break;
        case QSA_Token::SceneEnvMap:
            SkipTo('{');
            return ParseEnvMap();
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
}

/// To be called when the time scale is read: a scene without speed stands still.
void QSALoader::UpdateTimeScale()
{
    if (frameSpeed == 0.0f || ticksPerFrame == 0.0f) {
        Warning("Scene without speed: %g frames a second, %g ticks a frame",
                static_cast<double>(frameSpeed), static_cast<double>(ticksPerFrame));
        secondsPerTick = 0.0f;
        duration = 0.0f;
        return;
    }
    secondsPerTick = 1.0f / (ticksPerFrame * frameSpeed);
    duration = static_cast<float>(int64_t{lastFrame} - firstFrame) / frameSpeed;
}

/// Looks for the picture once for each block, however often the block names one.
int32_t QSALoader::ParseEnvMap()
{
    TokenBuffer name;
    bool isNamed = false;
    const int32_t result = ParseBlock([&](QSA_Token token) {
        if (token == QSA_Token::Bitmap && ReadQuoted(name) == 0)
            isNamed = true;
        return 0;
    });
    if (isNamed && loadTextures)
        LoadEnvironment(name);
    return result;
}

void QSALoader::LoadEnvironment(const char* name)
{
    KRE_Texture& texture = scene->backgroundTexture;
    String path;
    if (gGfx->FindTextureFile(&path, name, fileDirectory.c_str()))
        gGfx->LoadTexture(&texture, path.c_str(), 0, -1, -1, MipLevels());
    else
        Warning("Can not open environment texture file %s", name);
    texture.slotNames[texture.currentSlot].Assign(name);
}

int32_t QSALoader::ParseAtmospheric()
{
    return ParseBlock([&](QSA_Token token) {
        if (token != QSA_Token::StdFog)
            return 0;
        SkipTo('{');
        return ParseStdFog();
    });
}

int32_t QSALoader::ParseStdFog()
{
    scene->settings.useFog = 1;
    return ParseBlock([&](QSA_Token token) {
        if (token == QSA_Token::FogColor) {
            scene->settings.fogColor = 0xFF000000;
            ReadColour(&scene->settings.fogColor);
        }
        return 0;
    });
}
