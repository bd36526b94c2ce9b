#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/ReportObserver.h"
#include "qsa/QSA_SceneHeader.h"
#include "scene/KRE_3dScene.h"

/// A warning of the reader.
struct ReaderWarning {
    std::string source; ///< the label of the class that gave it
    std::string text;
    int64_t count = 1; ///< how often it came
};

/// What the reader had to say, each text once. Of very many different texts only the number is kept.
class WarningList : public ReportObserver {
public:
    static constexpr size_t kMostKept = 1000;

    /// Takes warnings; errors come as exceptions.
    void OnReport(ReportKind kind, const char* source, const char* text) override;
    const std::vector<ReaderWarning>& Kept() const { return kept; }
    /// Of all warnings, repeats and those not kept included.
    int64_t Count() const { return count; }
    /// Warnings whose text is not kept.
    int64_t LeftOut() const { return leftOut; }

private:
    std::vector<ReaderWarning> kept;
    std::map<std::pair<std::string, std::string>, size_t> places; ///< in `kept`, by source and text
    int64_t count = 0;
    int64_t leftOut = 0;
};

/// A scene from a QSA or QSB file with everything that is known about the file. Has to go before the
/// engine. Nothing is written anywhere.
class LoadedScene {
public:
    /// Loads a file as the converter does, from the file's own directory, and returns to the current
    /// one. False, with `errorText`, for one that cannot be loaded.
    bool Load(const std::string& pathIn);

    /// Where a texture or an effect of the scene is: beside the scene, or in the default
    /// directories; empty for nowhere.
    std::string FindTexture(const char* name) const;
    std::string FindEffect(const char* name) const;

    std::string path; ///< as given
    int64_t sizeBytes = 0;
    int32_t version = -1; ///< of a QSB file; -1 for QSA
    /// Whether a text begins as exports do. The reader takes any file that is no QSB for a text.
    bool hasTextMark = false;
    QSA_SceneHeader header;
    KRE_3dScene scene;
    WarningList warnings;
    /// Names that were looked for and not found; of very many some are missing.
    std::set<std::string> lostTextures;
    std::string errorText; ///< why Load failed

    /// A message without the file's name in front of it, which the readers put there.
    std::string_view WithoutFileName(std::string_view text) const;
    bool IsQsb() const { return version >= 0; }
    /// Seconds from the first frame to the last; 0 where the file has no frame rate.
    double Seconds() const;

private:
    bool ReadStart();
    bool Fail(const std::string& text);
    void LoadFromDirectory(const std::string& leaf);

    std::string directory; ///< of the file, ending in a separator; or empty
};
