#pragma once

#include <functional>

#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_ShaderEffect.h"

/// Makes one draw call, unless drawing is switched off. A failure is an `Error` with the result's
/// name in place of the one %s of `failureText`.
template <class Call>
void DrawOnce(KRE_Gfx& gfx, const Call& call, const char* failureText)
{
    if (!gfx.drawDisabled)
        gfx.Check(call(), failureText);
}

/// Warns which state makes the device refuse the draw, before the error is raised.
void WarnOfRefusedPass(KRE_Gfx& gfx, const KRE_ShaderEffect& effect, UINT pass,
                       const std::function<HRESULT()>& draw);

/// Calls `DrawOnce` in each pass of an effect, or once if `effect` is null.
template <class Call>
void DrawInPasses(KRE_Gfx& gfx, KRE_ShaderEffect* effect, const Call& call, const char* failureText)
{
    if (!effect) {
        DrawOnce(gfx, call, failureText);
        return;
    }
    const auto drawOrWarn = [&](UINT pass) {
        const HRESULT result = call();
        if (FAILED(result))
            WarnOfRefusedPass(gfx, *effect, pass, call);
        return result;
    };
    const UINT passes = effect->Begin();
    for (UINT pass = 0; pass < passes; ++pass) {
        effect->BeginPass(pass);
        DrawOnce(
            gfx, [&] { return drawOrWarn(pass); }, failureText);
        effect->EndPass();
    }
    effect->End();
}
