#include "app/ProcessFile.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/TargetName.h"
#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"

static constexpr D3DCOLOR kBackground = 0xFF000000;

/// One frame, the visible proof that the file has come through.
static void ShowOneFrame()
{
    gGfx->SetFillMode(D3DFILL_SOLID, nullptr);
    gGfx->BeginScene();
    gGfx->Clear(kBackground);
    gGfx->EndScene();
    gGfx->ShowFrame();
}

void ProcessFile(const char* fileName, int overwrite)
{
    const String targetName = MakeTargetName(fileName);
    if (!overwrite && FileExists(targetName.c_str()))
        return;
    gGfx->SetLighting(gLightingOn, nullptr);
    gGfx->SetSpecular(gSpecularOn);
    SetWindowTextA(gMainWindow, fileName);
    gGfx->SetZEnable(gWBuffer ? D3DZB_USEW : D3DZB_TRUE);
    gGfx->SetCullMode(-1);
    if (gViewEnabled)
        ShowOneFrame();
}
