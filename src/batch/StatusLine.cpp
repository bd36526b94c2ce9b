#include "batch/StatusLine.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

#include "batch/BatchText.h"

namespace {

constexpr double kShowInterval = 0.1; // seconds
constexpr size_t kUsualColumns = 80;

size_t TerminalColumns()
{
    winsize size = {};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return isKnown ? size.ws_col : kUsualColumns;
}

std::string TimeLeft(double seconds)
{
    const auto whole = static_cast<uint64_t>(std::ceil(std::max(seconds, 0.0)));
    if (whole < 60)
        return std::to_string(whole) + " s";
    if (whole < 3600)
        return std::to_string(whole / 60) + " min";
    return std::to_string(whole / 3600) + " h " + std::to_string(whole / 60 % 60) + " min";
}

} // namespace

std::string ProgressText(const RunProgress& progress)
{
    std::string text = GroupedNumber(progress.done) + " of " + GroupedNumber(progress.total) +
                       ", " + GroupedNumber(progress.failed) + " failed";
    if (progress.seconds <= 0 || progress.done == 0)
        return text;
    const double rate = static_cast<double>(progress.done) / progress.seconds;
    const double megabytes = static_cast<double>(progress.bytesIn) / 1e6 / progress.seconds;
    text += ", " + TenthsText(rate) + " files/s, " + TenthsText(megabytes) + " MB/s, ";
    return text + TimeLeft(static_cast<double>(progress.total - progress.done) / rate) + " left";
}

StatusLine::StatusLine(bool isWanted) : isShown(isWanted && isatty(STDERR_FILENO) == 1)
{}

StatusLine::~StatusLine()
{
    Clear();
}

void StatusLine::Say(const std::string& line)
{
    Clear();
    std::fprintf(stderr, "%s\n", line.c_str());
}

void StatusLine::Show(const RunProgress& progress)
{
    if (!isShown || (isThere && progress.seconds - shownAt < kShowInterval))
        return;
    shownAt = progress.seconds;
    std::string text = ProgressText(progress);
    text.resize(std::min(text.size(), TerminalColumns() - 1));
    std::fprintf(stderr, "\r%s\x1b[K", text.c_str());
    std::fflush(stderr);
    isThere = true;
}

void StatusLine::Clear()
{
    if (!isThere)
        return;
    std::fputs("\r\x1b[K", stderr);
    isThere = false;
}
