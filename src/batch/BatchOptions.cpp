#include "batch/BatchOptions.h"

#include <charconv>

namespace {

/// The shortest text that gives the same number, in C notation.
std::string NumberText(double value)
{
    char text[64];
    const auto written = std::to_chars(text, text + sizeof text, static_cast<float>(value),
                                       std::chars_format::general);
    return std::string(text, written.ptr);
}

} // namespace

std::string BatchOptions::EngineOptions() const
{
    std::string options = "/stop /nokey /resx:" + std::to_string(frameWidth) +
                          " /resy:" + std::to_string(frameHeight);
    if (camera)
        options += " /cam:" + std::to_string(*camera);
    if (timeSeconds)
        options += " /t:" + NumberText(*timeSeconds);
    if (loop)
        options += " /loop";
    if (fit)
        options += " /zn:1 /zf:1";
    if (noLight)
        options += " /nl";
    if (noSpecular)
        options += " /nospec";
    if (zBuffer)
        options += " /zbuf";
    return options;
}

std::string BatchOptions::TargetKey() const
{
    std::string key = "qsb";
    if (camera)
        key += " camera=" + std::to_string(*camera);
    if (loop)
        key += " loop";
    if (strict)
        key += " strict";
    if (check)
        key += " check";
    if (IsConfined())
        key += " untrusted"; // other pictures are missing
    if (import)
        key += " import " + importOptions;
    return key;
}

std::string BatchOptions::FrameKey() const
{
    return "frame " + EngineOptions();
}
