// drawframes [--width PIXELS] [--height PIXELS] [--times N] DIRECTORY SCENE...
// Draws each scene as the program does at the start of its animation and writes the back buffer to
// DIRECTORY/NAME.png. Prints the time of each frame in milliseconds, until it could be read back. With
// --times it draws each frame N times and prints the shortest time. The directory must exist.
// Returns 0 if everything was drawn, otherwise 1.

#include "tools/frames/FrameStage.h"

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>
#include <windows.h>

namespace {

namespace fs = std::filesystem;

struct Options {
    int width = 640;
    int height = 480;
    int times = 1;
    fs::path directory;
    std::vector<fs::path> scenes;
};

bool ReadArguments(int count, char** values, Options& options)
{
    for (int i = 1; i < count; ++i) {
        const std::string text = values[i];
        const bool hasValue = i + 1 < count;
        if (text == "--width" && hasValue)
            options.width = std::atoi(values[++i]);
        else if (text == "--height" && hasValue)
            options.height = std::atoi(values[++i]);
        else if (text == "--times" && hasValue)
            options.times = std::atoi(values[++i]);
        else if (options.directory.empty())
            options.directory = fs::absolute(text);
        else
            options.scenes.push_back(fs::absolute(text));
    }
    return options.width > 0 && options.height > 0 && options.times > 0 && !options.scenes.empty();
}

/// Scenes look for their pictures from their own folder. Each has its own engine, because states left by
/// one scene would show in the next. The first frame is saved.
bool DrawScene(const Options& options, const fs::path& scene)
{
    fs::current_path(scene.parent_path());
    FrameStage stage(options.width, options.height);
    const std::string name = scene.filename().string();
    const Frame frame = stage.Draw(name.c_str());
    double seconds = stage.DrawSeconds();
    for (int i = 1; i < options.times; ++i) {
        stage.Draw(name.c_str());
        seconds = std::min(seconds, stage.DrawSeconds());
    }
    const fs::path target = options.directory / (scene.stem().string() + ".png");
    if (frame.pixels.empty() || !WriteFramePng(frame, target.string())) {
        std::fprintf(stderr, "%s: no frame\n", scene.string().c_str());
        return false;
    }
    std::printf("%-16s %8.1f ms\n", scene.stem().string().c_str(), seconds * 1000.0);
    return true;
}

template <typename Record>
int EndByError(const Record& error)
{
    std::fprintf(stderr, "%s: %s\n", error.source, error.message);
    return 1;
}

int DrawAll(const Options& options)
{
    try {
        bool isGood = true;
        for (const fs::path& scene : options.scenes)
            isGood = DrawScene(options, scene) && isGood;
        return isGood ? 0 : 1;
    } catch (const KRE_Error& error) {
        return EndByError(error);
    } catch (const ErrorMsg& error) {
        return EndByError(error);
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    Options options;
    if (!ReadArguments(argumentCount, arguments, options)) {
        std::fputs("Usage: drawframes [--width PIXELS] [--height PIXELS] [--times N] DIRECTORY "
                   "SCENE...\n",
                   stderr);
        return 1;
    }
    const int status = DrawAll(options);
    std::fflush(nullptr);
    return status;
}
