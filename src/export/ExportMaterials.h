#pragma once

#include <map>
#include <string>

#include "export/ExportPictures.h"

class KRE_MaterialInfo;

/// The materials of a scene in a glTF document, equal ones once. What glTF has no word for is in
/// `extras.qsb`, under the names of the scene format.
class ExportMaterials {
public:
    ExportMaterials(GltfWriter& writerIn, ExportPictures& picturesIn, NoticeList& noticesIn)
        : writer(writerIn),
          pictures(picturesIn),
          notices(noticesIn)
    {}

    /// The number of the material; `name` is for one that is new. Pictures only `withPictures`, for a
    /// mesh with texture coordinates.
    int MaterialOf(const KRE_MaterialInfo& material, const KRE_Texture& texture,
                   const std::string& name, bool withPictures);

private:
    void AddOtherPictures(nlohmann::json& made, const KRE_Texture& texture);
    void AddPicture(nlohmann::json& made, const KRE_MaterialInfo& material,
                    const KRE_Texture& texture);
    nlohmann::json TextureOf(int image, const KRE_MaterialInfo& material,
                             const KRE_Texture& texture, int slot);
    void AddTransform(nlohmann::json& info, const KRE_Texture& texture, int slot);
    int SamplerOf(const KRE_MaterialInfo& material);
    /// The number of an element of a list, added if no equal one was.
    int Shared(const char* list, const nlohmann::json& element);

    GltfWriter& writer;
    ExportPictures& pictures;
    NoticeList& notices;
    std::map<std::string, int> shared; ///< by list and text of the element
};
