#include "gfx/KRE_Gfx.h"
#include "qsa/QSA_SceneHeader.h"
#include "qsb/QSB_Format.h"
#include "qsb/QSB_Record.h"
#include "qsb/QSB_TargetFile.h"
#include "scene/KRE_3dScene.h"

static void SaveHeader(File& file, const QSA_SceneHeader& header)
{
    WriteRecord(file, kQsbMagic);
    file.WriteInt8(static_cast<int8_t>(kQsbCurrent));
    file.WriteFloat32(header.frameSpeed);
    file.WriteFloat32(header.firstFrame);
    file.WriteFloat32(header.lastFrame);
    WriteText(file, header.soundFile);
    WriteText(file, header.scriptFile);
}

void KRE_Gfx::SaveScene(KRE_3dScene& scene, const char* path)
{
    QSB_TargetFile file;
    file.CreateFor(path);
    SaveHeader(file, SceneHeader());
    scene.Save(file);
    file.Finish();
}
