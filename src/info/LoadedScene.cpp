#include "info/LoadedScene.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <windows.h>

#include "base/ErrorClass.h"
#include "base/FileStream.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/TextureSearchSink.h"
#include "platform/HostStream.h"
#include "platform/OpenFileStream.h"
#include "qsa/QSALoader.h"

namespace fs = std::filesystem;

// ---- Warnings

void WarningList::OnReport(ReportKind kind, const char* source, const char* text)
{
    if (kind != ReportKind::kWarning)
        return;
    ++count;
    const auto place = places.find({source, text});
    if (place != places.end()) {
        ++kept[place->second].count;
        return;
    }
    if (kept.size() == kMostKept) {
        ++leftOut;
        return;
    }
    places.emplace(std::pair(source, text), kept.size());
    kept.push_back({source, text});
}

// ---- Loading

namespace {

constexpr size_t kLeastBytes = 4;   // the shortest file that the reader accepts
constexpr size_t kStartBytes = 256; // where the mark of a text is searched for

/// Catches all reports and all searches for textures during its lifetime; from then on the log file
/// is not touched. One at a time.
class ReportCatcher {
public:
    explicit ReportCatcher(LoadedScene& target)
    {
        gTarget = &target;
        gLogSink = [](const char*) {};
        gReportObserver = &target.warnings;
        gTextureSearchSink = [](const char* name, const char* path) {
            if (path[0] == 0 && gTarget->lostTextures.size() < WarningList::kMostKept)
                gTarget->lostTextures.insert(name);
        };
    }
    ~ReportCatcher()
    {
        gTextureSearchSink = nullptr;
        gReportObserver = nullptr; // later reports, as when objects are destroyed, are of no use
        gTarget = nullptr;
    }
    ReportCatcher(const ReportCatcher&) = delete;
    ReportCatcher& operator=(const ReportCatcher&) = delete;

private:
    static LoadedScene* gTarget; ///< not owned
};

LoadedScene* ReportCatcher::gTarget;

/// Changes into a directory and returns at the end.
class DirectoryVisit {
public:
    explicit DirectoryVisit(const std::string& directory) : before(fs::current_path(ignored))
    {
        isThere = directory.empty() || SetCurrentDirectoryA(directory.c_str()) != FALSE;
    }
    ~DirectoryVisit() { fs::current_path(before, ignored); }
    DirectoryVisit(const DirectoryVisit&) = delete;
    DirectoryVisit& operator=(const DirectoryVisit&) = delete;

    bool isThere = false;

private:
    std::error_code ignored;
    fs::path before;
};

/// Textures are shared by leaf name and size. Textures of one scene must not be taken for those of
/// another scene in another directory.
void ForgetTextureNames()
{
    for (int32_t i = 0; i < gGfx->textureManager.GetCount(); ++i)
        gGfx->textureManager.GetEntry(i)->name[0] = 0;
}

/// Makes a path relative to `directory` relative to the current directory.
std::string Joined(const std::string& directory, const String& found)
{
    if (found.IsEmpty() || IsAbsolutePath(found))
        return found.c_str();
    return directory + found.c_str();
}

} // namespace

bool LoadedScene::Load(const std::string& pathIn)
{
    path = pathIn;
    const size_t leafAt = path.find_last_of("/\\") + 1; // 0 without a separator
    directory = path.substr(0, leafAt);
    const DirectoryVisit visit(directory);
    if (!visit.isThere)
        return Fail("no such directory");
    if (!ReadStart())
        return false;
    const ReportCatcher catcher(*this);
    try {
        LoadFromDirectory(path.substr(leafAt));
    } catch (const KRE_Error& error) {
        return Fail(std::string(WithoutFileName(error.message)));
    } catch (const ErrorMsg& error) {
        return Fail(std::string(WithoutFileName(error.message)));
    }
    return true;
}

bool LoadedScene::Fail(const std::string& text)
{
    errorText = text;
    return false;
}

/// Reads the file's size and version, and whether it looks like a scene file.
bool LoadedScene::ReadStart()
{
    const FileStream stream(OpenFileStream(path.substr(directory.size()).c_str(), "rb"));
    if (!stream)
        return Fail(std::string("cannot be opened: ") + std::strerror(errno));
    char start[kStartBytes] = {};
    const size_t count = ReadStream(stream.get(), start, sizeof start);
    if (count < kLeastBytes)
        return Fail("too short for a scene file, or not readable");
    const std::string_view text(start, count);
    if (text.substr(0, 3) == "QSB")
        version = static_cast<uint8_t>(text[3]);
    else
        hasTextMark = text.find("3DSMAX_QSAEXPORT") != std::string_view::npos;
    if (std::fseek(stream.get(), 0, SEEK_END) == 0)
        sizeBytes = std::ftell(stream.get());
    return true;
}

void LoadedScene::LoadFromDirectory(const std::string& leaf)
{
    ForgetTextureNames();
    gGfx->loadsSceneEffects = 0; // only the names matter
    gGfx->LoadScene(scene, leaf.c_str(), kLoadSingleMipLevel);
    header = gGfx->SceneHeader();
}

std::string_view LoadedScene::WithoutFileName(std::string_view text) const
{
    const std::string_view leaf = std::string_view(path).substr(directory.size());
    const bool hasName = text.substr(0, leaf.size()) == leaf && text.substr(leaf.size(), 2) == ": ";
    return hasName ? text.substr(leaf.size() + 2) : text;
}

double LoadedScene::Seconds() const
{
    const double rate = header.frameSpeed;
    return rate > 0 ? (static_cast<double>(header.lastFrame) - header.firstFrame) / rate : 0;
}

// ---- Files that the scene names

std::string LoadedScene::FindTexture(const char* name) const
{
    const DirectoryVisit visit(directory);
    return Joined(directory, gGfx->LocateTexture(name, ""));
}

std::string LoadedScene::FindEffect(const char* name) const
{
    const DirectoryVisit visit(directory);
    return Joined(directory, gGfx->ResolveEffectPath(name, ""));
}
