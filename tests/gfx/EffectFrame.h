#pragma once

#include "gfx/KRE_ShaderEffect.h"
#include "tests/gfx/EngineTest.h"
#include "tests/support/ScriptedEffect.h"

/// An effect with whatever the test adds before `Load`.
class EffectFrame : public EngineTest {
protected:
    EffectFrame()
    {
        Start();
        scratch.Write("one.fx", "text");
        script.effects["one.fx"] = &file;
        file.AddTechnique();
    }

    void Load()
    {
        gfx.LoadEffect(&effect, "one.fx", false, 0, true);
        Calls();
    }
    void UpdateFrame()
    {
        Load();
        gfx.UpdateEffectFrame(effect);
    }
    const D3DXVECTOR4& Vector(const char* semantic) { return file.vectors[semantic].at(0); }

    EffectScript script;
    ScriptedEffect file{recorder};
    KRE_ShaderEffect effect;
};
