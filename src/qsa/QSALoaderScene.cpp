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
    for (;;) {
        switch (NextToken()) {
        case QSA_Token::BlockEnd:
            return 0;
        case QSA_Token::EndOfFile:
            return 1;
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
            if (ParseEnvMap() != 0)
                return 1;
            break;
        case QSA_Token::SceneSoundFile:
            ReadQuoted(&header.soundFile);
            break;
        case QSA_Token::SceneScriptFile:
            ReadQuoted(&header.scriptFile);
            break;
        default:
            break;
        }
    }
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
    for (;;) {
        const QSA_Token token = NextToken();
        if (token == QSA_Token::Bitmap && ReadQuoted(name) == 0)
            isNamed = true;
        if (token != QSA_Token::BlockEnd && token != QSA_Token::EndOfFile)
            continue;
        if (isNamed && loadTextures)
            LoadEnvironment(name);
        return token == QSA_Token::BlockEnd ? 0 : 1;
    }
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
    for (;;) {
        switch (NextToken()) {
        case QSA_Token::BlockEnd:
            return 0;
        case QSA_Token::EndOfFile:
            return 1;
        case QSA_Token::StdFog:
            SkipTo('{');
            if (ParseStdFog() != 0)
                return 1;
            break;
        default:
            break;
        }
    }
}

int32_t QSALoader::ParseStdFog()
{
    scene->settings.useFog = 1;
    for (;;) {
        switch (NextToken()) {
        case QSA_Token::BlockEnd:
            return 0;
        case QSA_Token::EndOfFile:
            return 1;
        case QSA_Token::FogColor:
            scene->settings.fogColor = 0xFF000000;
            ReadColour(&scene->settings.fogColor);
            break;
        default:
            break;
        }
    }
}
