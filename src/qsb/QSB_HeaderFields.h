#pragma once

#include "qsa/QSA_SceneHeader.h"
#include "qsb/QSB_Archive.h"

/// The header of a file, after magic and version.
template <class Archive>
void Fields(Archive& archive, Stored<Archive, QSA_SceneHeader>& header)
{
    archive.Real("frameSpeed", header.frameSpeed);
    archive.Real("firstFrame", header.firstFrame);
    archive.Real("lastFrame", header.lastFrame);
    archive.Text("soundFile", header.soundFile);
    archive.Text("scriptFile", header.scriptFile);
}
