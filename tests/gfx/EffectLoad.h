#pragma once

#include "gfx/KRE_ShaderEffect.h"
#include "tests/gfx/EngineTest.h"
#include "tests/support/ScriptedEffect.h"

/// An engine, a file "one.fx" and what it is compiled to. Techniques are the test's to add.
class EffectLoad : public EngineTest {
protected:
    EffectLoad()
    {
        Start();
        scratch.Write("one.fx", "text");
        script.effects["one.fx"] = &file;
        Calls();
    }
    /// What is left are the test's own references.
    ~EffectLoad() override
    {
        effect.Free();
        EXPECT_EQ(file.references, 1u);
    }

    int32_t Load(KRE_ShaderEffect& target, const char* name = "one.fx", bool fatalIfMissing = true)
    {
        return gfx.LoadEffect(&target, name, false, 0, fatalIfMissing);
    }
    std::string LoadError(const char* name = "one.fx")
    {
        return RaisedBy([&] { Load(effect, name); });
    }
    /// Where the only pass of an effect with this annotation draws to.
    EffectPassTarget TargetOf(const char* annotation)
    {
        ScriptedEffect probe;
        probe.AddTechnique({{annotation}});
        scratch.Write("probe.fx", "text");
        script.effects["probe.fx"] = &probe;
        KRE_ShaderEffect user;
        Load(user, "probe.fx");
        return user.data->techniques.at(0).passTargets.at(0);
    }

    EffectScript script;
    ScriptedEffect file{recorder};
    KRE_ShaderEffect effect;
};
