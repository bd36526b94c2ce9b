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
    std::string source; ///< the label of the class that issued it
    std::string text;
    int64_t count = 1; ///< how often it was issued
};

/// The warnings of the reader, each text once; beyond `kMostKept` texts they are only counted.
class WarningList : public ReportObserver {
public:
    static constexpr size_t kMostKept = 1000;

    /// Keeps warnings; errors arrive as exceptions.
    void OnReport(ReportKind kind, const char* source, const char* text) override;
    const std::vector<ReaderWarning>& Kept() const { return kept; }
    /// All warnings, including repeats and those not kept.
    int64_t Count() const { return count; }
    /// Warnings whose text was not kept.
    int64_t LeftOut() const { return leftOut; }

private:
    std::vector<ReaderWarning> kept;
    std::map<std::pair<std::string, std::string>, size_t> places; ///< in `kept`, by source and text
    int64_t count = 0;
    int64_t leftOut = 0;
};

/// A scene from a QSA or QSB file with everything that is known about the file. Must be destroyed
/// before the engine. Never writes to a file.
class LoadedScene {
public:
    /// Loads a file as the converter does, from the file's own directory, and returns to the
    /// current directory. False, with `errorText`, if it cannot be loaded.
    bool Load(const std::string& pathIn);

    /// The path of a texture or an effect of the scene: next to the scene, or in the default
    /// directories; empty if not found.
    std::string FindTexture(const char* name) const;
    std::string FindEffect(const char* name) const;

    std::string path; ///< as given
    int64_t sizeBytes = 0;
    int32_t version = -1; ///< of a QSB file; -1 for QSA
    /// Whether a text begins as exports do. The reader takes any file that is not QSB for a text.
    bool hasTextMark = false;
    QSA_SceneHeader header;
    KRE_3dScene scene;
    WarningList warnings;
    /// Names that were searched for and not found; the number kept is limited.
    std::set<std::string> lostTextures;
    std::string errorText; ///< why Load failed

    /// A message without the file name that readers put in front of it.
    std::string_view WithoutFileName(std::string_view text) const;
    bool IsQsb() const { return version >= 0; }
    /// Seconds from the first frame to the last; 0 if the file has no frame rate.
    double Seconds() const;

private:
    bool ReadStart();
    bool Fail(const std::string& text);
    void LoadFromDirectory(const std::string& leaf);

    std::string directory; ///< of the file, ending in a separator; or empty
};
