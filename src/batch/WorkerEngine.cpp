#include "batch/WorkerEngine.h"

#include <windows.h>

#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/SceneSession.h"
#include "app/StartGraphics.h"
#include "base/LoadInHand.h"
#include "base/ResetReports.h"
#include "gfx/DefaultPaths.h"
#include "gfx/KRE_Gfx.h"
#include "platform/headless/d3d9/UnmodelledCalls.h"
#include "platform/headless/win32/StoppedClock.h"
#include "qsa/QSA_SceneHeader.h"

namespace {

constexpr uint32_t kRandomSeed = 1;
constexpr int32_t kPixelsWorthCompressing = 0x10000; // 256 x 256

int32_t SharedObjects()
{
    return gGfx->textureManager.GetCount() + gGfx->surfaceManager.GetCount() +
           gGfx->meshManager.GetCount() + gGfx->effectManager.GetCount() +
           gGfx->spareManager.GetCount();
}

} // namespace

WorkerEngine::WorkerEngine(const std::string& optionsIn) : options(optionsIn)
{
    headless::StopClock();
    LoadWindowTexts(nullptr);
    ParseOptions(options.c_str());
    gViewEnabled = 1;
    RegisterMainWindowClass(nullptr);
    CreateMainWindow(nullptr, SW_HIDE);
    StartEngine();
}

WorkerEngine::~WorkerEngine()
{
    ShutdownGraphics();
}

void WorkerEngine::StartEngine()
{
    StartGraphics();
    if (hasPaths) // a confined process cannot read them again
        UseDefaultPaths();
    else
        ReadDefaultPaths();
    hasPaths = true;
    sharedAtStart = SharedObjects();
    isUsed = false;
}

bool WorkerEngine::HasLeftovers() const
{
    return isUsed || SharedObjects() != sharedAtStart;
}

void WorkerEngine::Prepare()
{
    if (HasLeftovers()) {
        ShutdownGraphics();
        StartEngine();
    }
    ParseOptions(options.c_str()); // the end of an animation stops the clock for good
    gLoadInHand = LoadInHand();
    gCurrentScene = nullptr;
    gGfx->random.Seed(kRandomSeed);
    gGfx->SetTextureCompression(0, kPixelsWorthCompressing);
    gGfx->SceneHeader() = QSA_SceneHeader();
    ResetReports();
    headless::ForgetUnmodelledCalls();
}
