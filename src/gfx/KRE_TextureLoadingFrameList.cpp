// Sequences of pictures: a text file that names one picture in each line.

#include "gfx/KRE_TextureLoading.h"

#include "base/File.h"
#include "base/HeapArray.h"
#include "base/Paths.h"
#include "gfx/KRE_FrameList.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_TextureRequest.h"

/// Reads all `*sizeOut` bytes of a file; none, with a warning, if it cannot be opened.
static HeapArray<char> ReadWhole(const String& name, int32_t* sizeOut)
{
    File file;
    *sizeOut = 0;
    if (!file.Open(name.c_str(), true, false, true))
        return {};
    HeapArray<char> bytes = HeapArray<char>::Try(file.GetSize());
    if (!bytes)
        file.Error("Out of memory for %i bytes", file.GetSize());
    file.Read(bytes.Get(), file.GetSize());
    *sizeOut = file.GetSize();
    return bytes;
}

namespace {

/// A line of a list with the path of its picture.
struct PlacedRun {
    KRE_FrameLine line;
    String name;
    String path;
    int32_t count = 1;
    bool isThere = false;
};

/// Finds a picture: at the path given, or else beside the list.
bool PlaceFrame(const String& directory, std::string_view name, PlacedRun* runOut)
{
    runOut->name.Assign(name.data(), static_cast<int32_t>(name.size()));
    runOut->path = runOut->name;
    if (FileExists(runOut->path.c_str()))
        return true;
    runOut->path = directory;
    runOut->path.Append(runOut->name.c_str());
    return FileExists(runOut->path.c_str()) || IsVideoName(runOut->path);
}

/// The name may contain spaces and end in a number, so the whole line is tried before its last word
/// is taken as a number of frames.
PlacedRun PlaceLine(const String& directory, const KRE_FrameLine& line)
{
    PlacedRun run;
    run.line = line;
    run.isThere = PlaceFrame(directory, line.text, &run);
    if (run.isThere)
        return run;
    const KRE_FrameRun counted = SplitFrameCount(line.text);
    run.count = counted.count;
    if (counted.name.size() < line.text.size())
        run.isThere = PlaceFrame(directory, counted.name, &run);
    return run;
}

/// All runs of a list, `*countOut` frames in total; stops when that exceeds kMostFrames.
std::vector<PlacedRun> PlaceLines(const String& file, const std::vector<KRE_FrameLine>& lines,
                                  int32_t* countOut)
{
    String directory;
    SplitDirectory(file.c_str(), &directory);
    EnsureTrailingSlash(&directory);
    std::vector<PlacedRun> runs;
    *countOut = 0;
    for (const KRE_FrameLine& line : lines) {
        runs.push_back(PlaceLine(directory, line));
        *countOut += runs.back().count;
        if (*countOut > kMostFrames)
            break;
    }
    return runs;
}

/// Repeats the current frame's picture in the frames after it, each as one more user.
void RepeatFrame(KRE_Texture& texture, int32_t times)
{
    const int32_t first = texture.frameIndex;
    KRE_ResourceManager* manager = texture.manager;
    for (int32_t i = 1; i <= times; ++i) {
        texture.SelectFrame(first + i);
        texture.PutTexture(manager, manager->Acquire(texture.frameIds[first]),
                           texture.frames[first]);
    }
}

} // namespace

void KRE_TextureLoading::LoadFrameList(KRE_Texture& texture, const String& file,
                                       const KRE_TextureRequest& request)
{
    int32_t size = 0;
    const HeapArray<char> text = ReadWhole(file, &size);
    const auto lines = SplitFrameList({text.Get(), static_cast<size_t>(size)});
    if (lines.empty())
        gfx.Error("Empty texture file list");
    int32_t count = 0;
    const auto runs = PlaceLines(file, lines, &count);
    if (count > kMostFrames)
        gfx.Error("Texture file list %s has more than %i frames", file.c_str(), kMostFrames);
    texture.CreateSequence(count, false);
    int32_t frame = 0;
    for (const PlacedRun& run : runs) {
        // A nested list would replace the sequence being filled, and a list that names itself would
        // never end.
        if (run.name.EndsWith(kFrameListExtension))
            gfx.Error("Texture file list %s names another list: %s", file.c_str(),
                      run.name.c_str());
        if (!run.isThere)
            gfx.Warning("Texture file list %s, line %i: no picture '%.*s'", file.c_str(),
                        run.line.number, static_cast<int>(run.line.text.size()),
                        run.line.text.data());
        texture.SelectFrame(frame);
        LoadTexture(&texture, run.path.c_str(), request.colorKey, request.mode, request.format,
                    request.mipLevels);
        RepeatFrame(texture, run.count - 1);
        frame += run.count;
    }
}
