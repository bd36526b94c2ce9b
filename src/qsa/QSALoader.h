#pragma once

#include <cstdint>

#include "qsa/QSA_LoadOptions.h"
#include "qsa/QSA_SceneHeader.h"
#include "qsa/QSA_SceneText.h"
#include "qsa/QSA_TimeScale.h"

class KRE_3dScene;
class KRE_Texture;

/// Reads QSA texts into scenes: one pass over the text, then the linking of what it held. One loader
/// serves all files, one at a time.
class QSALoader : public QSA_SceneText {
public:
    QSALoader();
    ~QSALoader() override;

    /// Empties `scene` and fills it from the file. `flags` are `QSA_LoadFlag`s; all bits set count
    /// as none. A damaged file is an `Error`; a file that ends early loads as far as it goes, with a
    /// `Warning`. Always 1.
    int32_t Load(KRE_3dScene& scene, const char* path, uint32_t flags);

    /// Of the file loaded last.
    const QSA_TimeScale& Time() const { return time; }

    /// Of the file loaded last, or of what a loader of another format left here.
    QSA_SceneHeader header;

private:
    struct Import; // lives as long as the load of one file

    // --- the file and its top level: QSALoader.cpp
    bool ParseTopLevel(Import& import);
    int32_t ParseTopLevelKeyword(QSA_Token token, Import& import);
    void LinkScene(Import& import);

    // --- scene and atmosphere: QSALoaderScene.cpp. These give 0 at the block's close and 1 when the
    // file ended inside it.
    int32_t ParseScene(KRE_3dScene& scene, const QSA_LoadOptions& options);
    void UpdateTime();
    int32_t ParseEnvMap(KRE_3dScene& scene, const QSA_LoadOptions& options);
    void LoadEnvironment(const char* name, KRE_Texture* texture, const QSA_LoadOptions& options);
    int32_t ParseAtmospheric(KRE_3dScene& scene);
    int32_t ParseStdFog(KRE_3dScene& scene);

    QSA_TimeScale time;
};
