#include "batch/InputRecorder.h"

#include <fcntl.h>

#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/FileLookups.h"
#include "platform/headless/win32/HostPath.h"

namespace {

InputRecorder* gRecorder; // the one that lives

/// Pictures are shared by many scenes, so their contents are remembered.
constexpr size_t kMostRemembered = 4096;
struct RememberedContent {
    FileStamp stamp;
    ino_t inode;
};
std::unordered_map<std::string, RememberedContent> gRemembered;

bool IsSameFile(const struct stat& a, const struct stat& b)
{
    return a.st_ino == b.st_ino && a.st_dev == b.st_dev && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

bool ContentOf(const std::string& path, const struct stat& info, FileStamp& stampOut)
{
    stampOut = StampOf(info);
    const auto known = gRemembered.find(path);
    if (known != gRemembered.end() && known->second.inode == info.st_ino &&
        known->second.stamp.HasSizeAndTimeOf(stampOut)) {
        stampOut = known->second.stamp;
        return true;
    }
    if (!StampOfFile(AT_FDCWD, path.c_str(), stampOut))
        return false;
    if (gRemembered.size() >= kMostRemembered)
        gRemembered.clear();
    gRemembered[path] = {stampOut, info.st_ino};
    return true;
}

} // namespace

InputRecorder::InputRecorder(const Descriptor& currentIn, const std::string& leaf)
    : current(currentIn),
      sourceLeaf(leaf)
{
    gRecorder = this;
    headless::gLookupSink = [](const char* path, const struct stat* found) {
        gRecorder->Note(path, found);
    };
}

InputRecorder::~InputRecorder()
{
    headless::gLookupSink = nullptr;
    gRecorder = nullptr;
}

/// Scenes without pictures never ask for it.
const std::string& InputRecorder::Directory()
{
    if (directory.empty())
        directory = PathOfDirectory(current);
    if (directory.empty() || directory.back() != '/')
        directory += '/';
    return directory;
}

void InputRecorder::NoteFile(const std::string& path)
{
    struct stat info;
    const bool isThere = headless::IsReadableFile(path.c_str()) && stat(path.c_str(), &info) == 0 &&
                         !S_ISDIR(info.st_mode);
    Note(path.c_str(), isThere ? &info : nullptr);
}

void InputRecorder::Note(const char* path, const struct stat* found)
{
    if (isPaused || !path || !*path || sourceLeaf == path)
        return;
    const bool isAbsolute = path[0] == '/' || path[0] == '\\';
    std::string whole = isAbsolute ? path : Directory() + path;
    const auto [place, isNew] = places.emplace(whole, seen.size());
    if (!isNew)
        return;
    seen.push_back({std::move(whole), found != nullptr, found ? *found : (struct stat){}});
}

bool InputRecorder::Describe(const LookedUp& looked, SceneInput& inputOut) const
{
    inputOut.path = looked.path;
    inputOut.isThere = looked.isThere;
    const std::string path = headless::ResolveHostPath(looked.path.c_str());
    struct stat now;
    const bool isThere = stat(path.c_str(), &now) == 0 && !S_ISDIR(now.st_mode);
    if (!looked.isThere)
        return !isThere || !headless::IsReadableFile(path.c_str());
    if (!S_ISREG(looked.info.st_mode)) // a pipe or a device has no content to compare
        return true;
    if (!isThere || !IsSameFile(looked.info, now) || !ContentOf(path, now, inputOut.stamp))
        return false;
    inputOut.stamp.changedNs = DependableTime(inputOut.stamp, startedAtNs);
    return true;
}

bool InputRecorder::Finish(std::vector<SceneInput>& inputsOut)
{
    isPaused = true;
    inputsOut.clear();
    bool areSame = true;
    for (const LookedUp& looked : seen) {
        inputsOut.emplace_back();
        areSame = Describe(looked, inputsOut.back()) && areSame;
    }
    return areSame;
}
