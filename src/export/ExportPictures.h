#pragma once

#include <map>
#include <set>
#include <string>

#include "gltf/GltfWriter.h"
#include "gltf/NoticeList.h"

class KRE_Texture;
class LoadedScene;

/// The pictures of a scene in a glTF document: PNG and JPEG files as they are, others as PNG. In a .glb
/// they are part of the file, otherwise they lie beside it.
class ExportPictures {
public:
    ExportPictures(GltfWriter& writerIn, const LoadedScene& loadedIn, bool embedsIn,
                   NoticeList& noticesIn)
        : writer(writerIn),
          loaded(loadedIn),
          embeds(embedsIn),
          notices(noticesIn)
    {}

    /// The number of the image with the picture in a slot; of a list of frames the first one. -1 if
    /// there is no picture.
    int ImageOf(const KRE_Texture& texture, int slot);

private:
    int Add(const KRE_Texture& texture, int slot, const std::string& name);
    std::string FreeLeaf(const std::string& name, const char* extension);

    GltfWriter& writer;
    const LoadedScene& loaded;
    bool embeds;
    NoticeList& notices;
    std::map<std::string, int> images; ///< by the scene's name of the picture
    std::set<std::string> leaves;      ///< of the files, in lower case
};
