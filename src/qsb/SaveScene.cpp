#include "base/WithMemory.h"
#include "gfx/KRE_Gfx.h"
#include "qsb/QSB_HeaderFields.h"
#include "qsb/QSB_TargetFile.h"
#include "qsb/WriteScene.h"
#include "scene/KRE_3dScene.h"

static void SaveHeader(File& file, const QSA_SceneHeader& header)
{
    file.Write(kQsbMagic, sizeof kQsbMagic);
    file.WriteInt8(static_cast<int8_t>(kQsbCurrent));
    SaveFields(file, header);
}

void WriteScene(KRE_3dScene& scene, File& file)
{
    SaveHeader(file, gGfx->SceneHeader());
    scene.Save(file);
}

void KRE_Gfx::SaveScene(KRE_3dScene& scene, const char* path)
{
    const auto save = [&] {
        QSB_TargetFile file;
        file.CreateFor(path);
        SaveHeader(file, SceneHeader());
        scene.Save(file);
        file.Finish();
    };
    WithMemory(save, [&] { Error("'%s': Not enough memory for the scene", path); });
}
