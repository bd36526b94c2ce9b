// compareframes [OPTION...] A B: compares two pictures, or those with equal names in two directories.
// tools/compare-frames builds and runs it and describes the options.

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/ImageFileBytes.h"
#include "platform/headless/d3dx/PngWriter.h"
#include "tools/frames/FrameComparison.h"
#include "tools/frames/FrameExceptions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>

using namespace headless;

namespace {

namespace fs = std::filesystem;

enum ExitStatus { kAlike = 0, kDifferent = 1, kUnusable = 2 };

struct Options {
    FrameTolerance tolerance;
    size_t rawWidth = 0;  ///< of .argb files; 0 for square ones
    fs::path differences; ///< a directory, or empty
    fs::path exceptions;  ///< a file: the frames are of scenes, with these exceptions
    fs::path sides[2];
};

/// Without a header, the file gives only the number of words.
bool ReadRaw(ImageFile bytes, size_t rawWidth, Frame& frameOut)
{
    const size_t count = bytes.size() / 4;
    const auto side = static_cast<size_t>(std::lround(std::sqrt(static_cast<double>(count))));
    frameOut.width = rawWidth != 0 ? rawWidth : side;
    frameOut.height = count / frameOut.width;
    if (bytes.size() % 4 != 0 || count == 0 || frameOut.width * frameOut.height != count)
        return false;
    frameOut.pixels.resize(count);
    std::memcpy(frameOut.pixels.data(), bytes.data(), bytes.size());
    return true;
}

bool ReadImage(ImageFile bytes, Frame& frameOut)
{
    DecodedImage image;
    if (FAILED(DecodeImage(bytes, image)))
        return false;
    const PixelFormat* format = FindPixelFormat(image.format);
    const ImageLevel& level = image.levels[0];
    frameOut.width = level.width;
    frameOut.height = level.height;
    frameOut.pixels.resize(frameOut.width * frameOut.height);
    return format && UnpackImage(*format, level.width, level.height, level.bits, level.pitchBytes,
                                 frameOut.pixels.data());
}

bool ReadFrame(const fs::path& path, const Options& options, Frame& frameOut)
{
    ImageFileBytes file;
    if (SUCCEEDED(file.Read(path.c_str())) &&
        (path.extension() == ".argb" ? ReadRaw(file.Bytes(), options.rawWidth, frameOut)
                                     : ReadImage(file.Bytes(), frameOut)))
        return true;
    std::printf("%s: can not be read as a picture\n", path.c_str());
    return false;
}

void KeepDifference(const Options& options, const fs::path& name, const Frame& a, const Frame& b,
                    int step)
{
    if (options.differences.empty())
        return;
    std::error_code error;
    fs::create_directories(options.differences, error);
    const Frame frame = DifferenceFrame(a, b, step);
    const std::string path = (options.differences / name.stem()).string() + ".png";
    std::string reason;
    if (!WritePngFile(path.c_str(), static_cast<int>(frame.width), static_cast<int>(frame.height),
                      frame.pixels.data(), false, reason))
        std::printf("%s: not written: %s\n", path.c_str(), reason.c_str());
}

/// One line of the table of scenes.
ExitStatus CompareScene(const Options& options, const fs::path& pathA, Frame& a, Frame& b)
{
    const std::string scene = pathA.stem().string();
    const auto exceptions = ReadFrameExceptions(options.exceptions.string());
    BlankExceptions(a, exceptions, scene);
    BlankExceptions(b, exceptions, scene);
    const SceneDifference found = CompareSceneFrames(a, b);
    const size_t differing = found.rounding.displaced + found.rounding.wrong;
    std::printf("%-16s %8.3f %% %9zu %9zu %9d  %s\n", scene.c_str(),
                static_cast<double>(differing) * 100.0 /
                    static_cast<double>(std::max<size_t>(found.rounding.count, 1)),
                found.large.displaced, found.large.wrong, found.large.largestStep,
                found.IsWithin() ? "alike" : "DIFFERENT");
    for (const FrameException& exception : exceptions)
        if (exception.scene == scene)
            std::printf("    left out: %s\n", exception.reason.c_str());
    if (differing > 0)
        KeepDifference(options, pathA.filename(), a, b, SceneDifference::kRounding);
    return found.IsWithin() ? kAlike : kDifferent;
}

ExitStatus ComparePair(const Options& options, const fs::path& pathA, const fs::path& pathB)
{
    Frame a, b;
    if (!ReadFrame(pathA, options, a) || !ReadFrame(pathB, options, b))
        return kUnusable;
    if (!options.exceptions.empty())
        return CompareScene(options, pathA, a, b);
    const FrameDifference found = CompareFrames(a, b, options.tolerance.step);
    const bool isWithin = IsWithin(found, options.tolerance);
    const char* verdict = isWithin ? "alike" : "DIFFERENT";
    if (!found.isSameSize) {
        std::printf("%s: %s: %zu x %zu and %zu x %zu\n", pathA.filename().c_str(), verdict, a.width,
                    a.height, b.width, b.height);
        return kDifferent;
    }
    const double percent = 100.0 / static_cast<double>(found.count);
    std::printf("%s: %s: displaced %zu (%.2f %%), wrong %zu (%.2f %%), largest step %d\n",
                pathA.filename().c_str(), verdict, found.displaced,
                static_cast<double>(found.displaced) * percent, found.wrong,
                static_cast<double>(found.wrong) * percent, found.largestStep);
    if (!isWithin)
        KeepDifference(options, pathA.filename(), a, b, options.tolerance.step);
    return isWithin ? kAlike : kDifferent;
}

/// Whether the whole scene is an exception and one side lacks its frame.
bool IsLeftOut(const Options& options, const fs::path& name)
{
    if (options.exceptions.empty() ||
        (fs::exists(options.sides[0] / name) && fs::exists(options.sides[1] / name)))
        return false;
    const std::string scene = name.stem().string();
    for (const FrameException& exception : ReadFrameExceptions(options.exceptions.string())) {
        if (exception.scene == scene && exception.IsWholeFrame()) {
            std::printf("%-16s left out: %s\n", scene.c_str(), exception.reason.c_str());
            return true;
        }
    }
    return false;
}

/// The names on both sides; a picture missing on one side is reported when read.
ExitStatus CompareDirectories(const Options& options)
{
    std::set<fs::path> names;
    for (const fs::path& side : options.sides)
        for (const fs::directory_entry& entry : fs::directory_iterator(side))
            if (entry.path().extension() == ".png" || entry.path().extension() == ".argb")
                names.insert(entry.path().filename());
    ExitStatus worst = names.empty() ? kUnusable : kAlike;
    size_t alike = 0;
    if (!options.exceptions.empty())
        std::printf("%-16s %10s %9s %9s %9s\n", "scene", "over 2", "16: edges", "elsewhere",
                    "largest");
    size_t compared = 0;
    for (const fs::path& name : names) {
        if (IsLeftOut(options, name))
            continue;
        const ExitStatus status =
            ComparePair(options, options.sides[0] / name, options.sides[1] / name);
        worst = std::max(worst, status);
        alike += status == kAlike;
        ++compared;
    }
    std::printf("%zu of %zu pictures alike\n", alike, compared);
    return worst;
}

template <typename Number>
bool ReadNumber(const char* text, Number& valueOut)
{
    const char* end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, valueOut);
    return error == std::errc() && stop == end && valueOut >= Number{};
}

bool ReadOption(const std::string& name, const char* value, Options& options)
{
    if (name == "--step")
        return ReadNumber(value, options.tolerance.step);
    if (name == "--displaced")
        return ReadNumber(value, options.tolerance.displacedPercent);
    if (name == "--wrong")
        return ReadNumber(value, options.tolerance.wrongPercent);
    if (name == "--width")
        return ReadNumber(value, options.rawWidth);
    (name == "--scenes" ? options.exceptions : options.differences) = value;
    return name == "--scenes" || name == "--differences";
}

bool ReadArguments(int count, char** values, Options& options)
{
    int sides = 0;
    for (int i = 1; i < count; ++i) {
        const std::string text = values[i];
        if (text.starts_with("--")) {
            if (++i >= count || !ReadOption(text, values[i], options))
                return false;
        } else if (sides < 2) {
            options.sides[sides++] = text;
        } else {
            return false;
        }
    }
    return sides == 2;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    Options options;
    if (!ReadArguments(argumentCount, arguments, options)) {
        std::fputs("Usage: compareframes [--step N] [--displaced PERCENT] [--wrong PERCENT] "
                   "[--width PIXELS] [--scenes EXCEPTIONS] [--differences DIRECTORY] "
                   "A B\n",
                   stderr);
        return kUnusable;
    }
    const bool areDirectories =
        fs::is_directory(options.sides[0]) && fs::is_directory(options.sides[1]);
    return areDirectories ? CompareDirectories(options)
                          : ComparePair(options, options.sides[0], options.sides[1]);
}
