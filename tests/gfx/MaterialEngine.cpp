#include "tests/gfx/MaterialEngine.h"

#include <sstream>

MaterialEngine::MaterialEngine()
{
    Start();
    gfx.ResetStateCache();
}

IDirect3DTexture9* MaterialEngine::MakePicture(D3DFORMAT format)
{
    IDirect3DTexture9* made = nullptr;
    gfx.device->CreateTexture(4, 4, 1, 0, format, D3DPOOL_MANAGED, &made, nullptr);
    return made;
}

IDirect3DTexture9* MaterialEngine::PutMap(int32_t slot, int32_t type, D3DFORMAT format)
{
    texture.SelectStage(slot);
    texture.PutTexture(nullptr, -1, MakePicture(format));
    texture.SetStage(slot, type, 1.0f);
    texture.Refresh();
    return texture.slotTextures[slot];
}

void MaterialEngine::PutFrames()
{
    texture.CreateSequence(2, false);
    for (int32_t i = 0; i < 2; ++i) {
        texture.SelectFrame(i);
        texture.PutTexture(nullptr, -1, MakePicture());
    }
}

std::vector<std::string> MaterialEngine::CallsOfBinding()
{
    gfx.ResetStateCache();
    Calls();
    gfx.SetTexture(&texture);
    return Calls();
}

std::vector<std::string> MaterialEngine::CallsOfRepeat()
{
    Calls();
    gfx.SetTexture(&texture);
    std::vector<std::string> calls = Calls();
    std::erase_if(calls, [](const std::string& line) {
        return line.find("D3DRS_TEXTUREFACTOR") != std::string::npos;
    });
    return calls;
}

std::vector<std::string> MaterialEngine::Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream source(text);
    for (std::string line; std::getline(source, line);) {
        std::istringstream words(line);
        std::string first, state, value;
        words >> first >> state >> value;
        const auto picture = [&](const void* object) {
            return "SetTexture " + first + " " + recorder->NameOfObject("texture", object);
        };
        if (first.empty())
            continue;
        if (first == "FACTOR")
            lines.push_back("SetRenderState D3DRS_TEXTUREFACTOR " + state);
        else if (value.empty())
            lines.push_back("SetRenderState D3DRS_" + first + " " + state);
        else if (state == "TEXTURE" && value == "first")
            lines.push_back(picture(texture.slotTextures[0]));
        else if (state == "TEXTURE" && value == "second")
            lines.push_back(picture(texture.slotTextures[1]));
        else if (state == "TEXTURE" && value == "frame")
            lines.push_back(picture(texture.current));
        else if (state == "TEXTURE")
            lines.push_back("SetTexture " + first + " null");
        else {
            const char* prefix = "D3DTA_";
            if (state == "COLOROP" || state == "ALPHAOP")
                prefix = "D3DTOP_";
            else if (state == "TEXTURETRANSFORMFLAGS")
                prefix = "D3DTTFF_";
            else if (state == "TEXCOORDINDEX" || state == "CONSTANT")
                prefix = "";
            lines.push_back("SetTextureStageState " + first + " D3DTSS_" + state + " " + prefix +
                            value);
        }
    }
    return lines;
}
