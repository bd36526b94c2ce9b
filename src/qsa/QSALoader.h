#pragma once

#include <cstdint>

#include "qsa/QSA_KeyPartLimits.h"
#include "qsa/QSA_LoadOptions.h"
#include "qsa/QSA_SceneHeader.h"
#include "qsa/QSA_SceneText.h"
#include "qsa/QSA_TimeScale.h"

class KRE_3dScene;
class KRE_Texture;

/// Reads QSA texts into scenes: one pass over the text, then a linking pass. One loader reads all
/// files, one at a time.
class QSALoader : public QSA_SceneText {
public:
    QSALoader();
    ~QSALoader() override;

    /// Clears `scene` and fills it from the file. `flags` are `QSA_LoadFlag`s; all bits set means
    /// no flags. A damaged file is an `Error`; a file that ends early loads up to that point, with
    /// a `Warning`. Always returns 1.
    int32_t Load(KRE_3dScene& scene, const char* path, uint32_t flags);

    /// Limits of the files loaded from now on.
    void SetKeyPartLimits(const QSA_KeyPartLimits& limits) { keyPartLimits = limits; }

    /// The times of the last file loaded.
    const QSA_TimeScale& Time() const { return time; }

    /// The header of the last file loaded, or the one that a loader of another format stored here.
    QSA_SceneHeader header;

private:
    struct Import; // lives for the load of one file

    // --- the file and its top level: QSALoader.cpp
    void ReadScene(KRE_3dScene& scene, const char* path, uint32_t flags);
    bool ParseTopLevel(Import& import);
    int32_t ParseTopLevelKeyword(QSA_Token token, Import& import);
    void LinkScene(Import& import);

    // --- scene and atmosphere: QSALoaderScene.cpp. These return 0 at the end of the block and 1 if
    // the file ends inside it.
    int32_t ParseScene(KRE_3dScene& scene, const QSA_LoadOptions& options);
    void UpdateTime();
    int32_t ParseEnvMap(KRE_3dScene& scene, const QSA_LoadOptions& options);
    void LoadEnvironment(const char* name, KRE_Texture* texture, const QSA_LoadOptions& options);
    int32_t ParseAtmospheric(KRE_3dScene& scene);
    int32_t ParseStdFog(KRE_3dScene& scene);

    QSA_TimeScale time;
    QSA_KeyPartLimits keyPartLimits;
};
