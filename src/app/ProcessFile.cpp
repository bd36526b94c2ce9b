#include "app/ProcessFile.h"

#include "app/Options.h"
#include "app/SceneSession.h"
#include "app/TargetName.h"
#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"

void ProcessFile(const char* fileName, int overwrite)
{
    SceneSession session;
    const String targetName = MakeTargetName(fileName);
    if (!overwrite && FileExists(targetName.c_str()))
        return;
    gGfx->SetLighting(gLightingOn, nullptr);
    gGfx->SetSpecular(gSpecularOn);
    session.Load(fileName);
    session.Save(targetName.c_str());
    if (gViewEnabled)
        session.ShowFrame();
}
