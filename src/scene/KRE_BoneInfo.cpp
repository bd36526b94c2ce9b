#include "scene/KRE_BoneInfo.h"

#include "base/FormatText.h"

KRE_BoneInfo::KRE_BoneInfo(const char* newName)
{
    CopyText(name, sizeof name, newName ? newName : "");
    D3DXMatrixIdentity(&boneInitTM);
    D3DXMatrixIdentity(&meshInitTM);
    D3DXMatrixIdentity(&bindTM);
}

KRE_BoneInfo::KRE_BoneInfo(const char* newName, const D3DXMATRIX& boneInit,
                           const D3DXMATRIX& meshInit)
    : KRE_BoneInfo(newName)
{
    boneInitTM = boneInit;
    meshInitTM = meshInit;
    D3DXMatrixMultiply(&bindTM, &meshInitTM, &boneInitTM);
}
