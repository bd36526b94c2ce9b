#pragma once

#include <d3dx9.h>

class File;
class QSB_InputFile;

/// A bone that moves vertices of a mesh. The first one of a mesh represents the mesh itself.
struct KRE_BoneInfo {
    static constexpr int kNameSize = 256;

    char name[kNameSize] = ""; ///< of the object that moves it, truncated at 255 bytes
    D3DXMATRIX boneInitTM;     ///< into the bone's space, at bind time
    D3DXMATRIX meshInitTM;     ///< out of the mesh's stored space, at bind time
    D3DXMATRIX bindTM;         ///< both: from the stored space into the bone's

    /// Identity matrices and a name, which may be null.
    explicit KRE_BoneInfo(const char* newName = nullptr);
    KRE_BoneInfo(const char* newName, const D3DXMATRIX& boneInit, const D3DXMATRIX& meshInit);

    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);
};
