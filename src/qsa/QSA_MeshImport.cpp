#include <algorithm>

#include "base/LoadInHand.h"
#include "qsa/QSA_MeshImport.h"
#include "qsa/QSA_NewObject.h"
#include "scene/KRE_3dScene.h"

QSA_MeshImport::QSA_MeshImport(QSA_SceneText& sceneText, QSA_MaterialImport& materialImport,
                               QSA_NodeImport& nodeImport, KRE_3dScene& target,
                               const QSA_LoadOptions& loadOptions)
    : text(sceneText),
      materials(materialImport),
      nodes(nodeImport),
      scene(target),
      options(loadOptions),
      builder(sceneText),
      copies(sceneText.TextSize())
{}

int32_t QSA_MeshImport::ParseGeomObject()
{
    const int32_t slot = scene.meshes.Add();
    KRE_Mesh* mesh = CheckMemory(scene.meshes.GetSlot(slot), text);
    int32_t result = 0;
    WithMemoryFor(*mesh, text, [&] { result = ReadGeomObject(slot, mesh); });
    return result;
}

int32_t QSA_MeshImport::ReadGeomObject(int32_t slot, KRE_Mesh* mesh)
{
    geometry = QSA_NodeGeometry();
    std::fill(std::begin(counts), std::end(counts), QSA_MeshCounts{});
    builder.Clear();
    int32_t result = 0;
    for (bool isOpen = true; isOpen && result == 0;) {
        const QSA_Token token = text.NextToken();
        switch (token) {
        case QSA_Token::BlockEnd:
            isOpen = false;
            break;
        case QSA_Token::EndOfFile:
            result = 1;
            break;
        default:
            result = ParseGeomKeyword(token, mesh);
            break;
        }
    }
    if (geometry.hasGeometry) {
        FinishMesh(mesh);
        return result;
    }
    // A node without faces is not a mesh.
    KRE_3dObject* object = AddObject(&scene.objects, text);
    object->Assign(*mesh);
    object->objectKind = kObjectHelper;
    scene.meshes.DeleteSlot(slot);
    return result;
}

int32_t QSA_MeshImport::ParseGeomKeyword(QSA_Token token, KRE_Mesh* mesh)
{
    switch (token) {
    case QSA_Token::NodeVisible: {
        int32_t isVisible = 0;
        text.ReadInt(&isVisible);
        mesh->visible = isVisible != 0 ? 1 : 0;
        return 0;
    }
    case QSA_Token::Mesh: {
        if (geometry.isClone)
            return 0; // the block is skipped like an unknown one
        text.SkipTo('{');
        const int32_t result = ParseMesh(mesh);
        if (counts[kFaceList].number > 0)
            geometry.hasGeometry = true;
        return result;
    }
    case QSA_Token::Clone:
        text.ReadQuoted(&mesh->cloneSource);
        geometry.isClone = true;
        geometry.hasGeometry = true;
        return 0;
    case QSA_Token::MaterialRef:
        text.ReadInt(&geometry.materialRef);
        return 0;
    case QSA_Token::WireframeColor:
        text.ReadColor(&geometry.wireColor);
        return 0;
    default:
        return nodes.ParseNodeKeyword(token, mesh);
    }
}

void QSA_MeshImport::FinishMesh(KRE_Mesh* mesh)
{
    const LoadScope inHand(mesh->name);
    // A clone of an unnamed source has geometry of its own, or none.
    if (!mesh->cloneSource.IsEmpty()) {
        KeepMeshInfo(mesh);
        return;
    }
    if (text.FileMajor() == 1)
        D3DXMatrixIdentity(&mesh->pivotTM);
    BuildMesh(mesh);
    builder.Clear();
}

/// Creates the record of the current mesh. Of meshes with the same name the first keeps it; others
/// get null.
QSA_MeshLoadInfo* QSA_MeshImport::KeepMeshInfo(KRE_Mesh* mesh)
{
    auto* entry = meshInfos.Insert(mesh->name);
    if (!entry)
        return nullptr;
    entry->data.materialRef = geometry.materialRef;
    entry->data.wireColor = geometry.wireColor;
    entry->data.mesh = mesh;
    return &entry->data;
}
