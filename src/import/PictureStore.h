#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "import/Model.h"
#include "import/PictureKinds.h"

class NoticeList;

/// Puts the pictures of a model beside its scene. Those that scenes can have (PNG, JPEG, BMP, TGA, DDS) keep
/// their bytes, others become PNG files.
class PictureStore {
public:
    /// `stem` is the scene's, and the start of the names of pictures inside the model.
    PictureStore(const std::string& folderIn, const std::string& stemIn, NoticeList& noticesIn)
        : folder(folderIn),
          stem(stemIn),
          notices(noticesIn)
    {}

    /// The leaf for each image; empty for one that is missing, damaged or not used. Throws ModelFault
    /// if a picture cannot be written.
    std::vector<std::string> Keep(const Model& model);
    /// The files that were written.
    const std::vector<std::string>& Written() const { return written; }

private:
    std::string KeepOne(const ModelImage& image, bool dropsAlpha);
    bool IsOthers(const std::string& leaf, const std::string& source,
                  const std::string& bytes) const;
    std::string FreeLeaf(const std::string& wanted, const std::string& bytes);
    void Write(const std::string& path, const std::string& bytes);

    std::string folder; ///< ending in a separator; or empty
    std::string stem;
    NoticeList& notices;
    PixelBudget budget;
    std::map<std::pair<std::string, std::string>, std::string> leaves; ///< by wanted name and bytes
    std::set<std::string> taken;                                       ///< names in lower case
    std::map<std::string, int> numbers; ///< by wanted name: the last one tried
    std::vector<std::string> written;
};
