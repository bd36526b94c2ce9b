#include "tools/frames/FrameExceptions.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace {

size_t Place(int wanted, size_t size, bool isFar)
{
    const int extent = static_cast<int>(size);
    const bool fromFarSide = wanted < 0 || (isFar && wanted == 0);
    return static_cast<size_t>(std::clamp(fromFarSide ? extent + wanted : wanted, 0, extent));
}

} // namespace

std::vector<FrameException> ReadFrameExceptions(const std::string& path)
{
    std::vector<FrameException> exceptions;
    std::ifstream lines(path);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        FrameException made;
        if (line.starts_with('#') ||
            !(words >> made.scene >> made.left >> made.top >> made.right >> made.bottom >> std::ws))
            continue;
        std::getline(words, made.reason);
        exceptions.push_back(made);
    }
    return exceptions;
}

void BlankExceptions(Frame& frame, const std::vector<FrameException>& exceptions,
                     const std::string& scene)
{
    for (const FrameException& exception : exceptions) {
        if (exception.scene != "*" && exception.scene != scene)
            continue;
        const size_t left = Place(exception.left, frame.width, false);
        const size_t right = Place(exception.right, frame.width, true);
        const size_t bottom = Place(exception.bottom, frame.height, true);
        for (size_t y = Place(exception.top, frame.height, false); y < bottom; ++y)
            for (size_t x = left; x < right; ++x)
                frame.pixels[y * frame.width + x] = 0xFF000000;
    }
}
