#pragma once

#include <cstdint>

#include "qsa/QSA_KeyPartLimits.h"
#include "qsa/QSA_SceneText.h"
#include "qsa/QSA_TimeScale.h"
#include "qsa/QSA_Transform.h"

class KRE_3dObject;
class KRE_3dScene;
class KRE_Camera;
class KRE_Light;
class KRE_RotKeyData;

/// Reads bones, helpers, cameras and lights into a scene, and the part of meshes that all nodes
/// share. Block parsers start after the opening brace and return 0 at the end of the block and 1 if
/// the file ends inside it.
class QSA_NodeImport {
public:
    /// The text and the scene must outlive the import.
    QSA_NodeImport(QSA_SceneText& sceneText, KRE_3dScene& target,
                   const QSA_KeyPartLimits& limits = {});

    /// A bone, helper or target.
    int32_t ParseNode(int32_t kind);
    int32_t ParseCamera();
    int32_t ParseLight();
    /// Reads a keyword that all nodes share and ignores any other. 1 if the file ended in its
    /// block.
    int32_t ParseNodeKeyword(QSA_Token token, KRE_3dObject* object);
    /// Starts at the keyword and reads the block that follows. The end of the block determines in
    /// which axes the node is mirrored; the scale itself has no sign.
    int32_t ParseTransform(QSA_Transform* transformOut);

    /// Called once all nodes are read: converts the times of all keys in the scene to seconds.
    void FinishKeys(const QSA_TimeScale& time);

private:
    // --- nodes: QSA_NodeImport.cpp
    int32_t ParseCameraSettings(KRE_Camera* camera);
    int32_t ParseLightSettings(KRE_Light* light, float (&color)[3]);
    void FinishLight(KRE_Light* light, const char* typeWord);
    void ReadMatrixRow(D3DXMATRIX* matrix, int row);
    void FindMirroredAxes(QSA_Transform* transform);
    int32_t ParseNodeTransform(KRE_3dObject* object);
    int32_t ParsePivot(KRE_3dObject* object);

    // --- their keys: QSA_NodeImportKeys.cpp
    int32_t ParseAnimation(KRE_3dObject* object);
    int32_t ParsePositionKeys(KRE_3dObject* object);
    int32_t ParseScaleKeys(KRE_3dObject* object);
    int32_t ParseRotationKeys(KRE_3dObject* object);
    void ParseRotationKey(QSA_TextCursor& cursor, QSA_Token token, KRE_3dObject* object,
                          float* highestTime);
    void AddSplitRotKey(KRE_3dObject* object, KRE_RotKeyData& key);

    QSA_SceneText& text; ///< not owned, the current file
    KRE_3dScene& scene;  ///< not owned, the current scene
    const QSA_KeyPartLimits keyPartLimits;
    int64_t keyParts = 0; ///< rotation keys that were made by splitting
};
