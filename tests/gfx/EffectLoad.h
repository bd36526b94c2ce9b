#pragma once

#include "gfx/KRE_ShaderEffect.h"
#include "tests/gfx/EngineTest.h"
#include "tests/support/ScriptedEffect.h"

/// An engine, a file "one.fx" and its compiled form. The test adds the techniques.
class EffectLoad : public EngineTest {
protected:
    EffectLoad()
    {
        Start();
        scratch.Write("one.fx", "text");
        script.effects["one.fx"] = &file;
        Calls();
    }
    /// Only the test's own references are left.
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
    /// The target of an effect's only pass with this annotation.
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
