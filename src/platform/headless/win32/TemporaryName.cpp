#include "platform/headless/win32/TemporaryName.h"

#include "platform/headless/win32/DescriptorStream.h"

#include <cctype>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string_view>

#include <sys/utsname.h>
#include <unistd.h>

namespace headless {

namespace {

constexpr std::string_view kTemporaryPrefix = ".qsa2qsb-";
constexpr std::string_view kTemporarySuffix = ".tmp";

/// The dashes separate the parts of a name, so a host's own stay and are told from them by their place:
/// the last three parts have none. Other characters that a share may refuse are replaced.
std::string HostName()
{
    utsname system;
    std::string name = uname(&system) == 0 ? system.nodename : "";
    for (char& letter : name) {
        const bool isPlain =
            std::isalnum(static_cast<unsigned char>(letter)) || letter == '.' || letter == '-';
        if (!isPlain)
            letter = '_';
    }
    return name;
}

std::string BootId()
{
    const std::unique_ptr<FILE, int (*)(FILE*)> file(
        OpenDescriptorStream("/proc/sys/kernel/random/boot_id", "re"), std::fclose);
    std::string id;
    for (int letter = file ? std::fgetc(file.get()) : EOF; std::isxdigit(letter) || letter == '-';
         letter = std::fgetc(file.get())) {
        if (letter != '-')
            id += static_cast<char>(letter);
    }
    return id;
}

/// Takes what follows the last dash of `text`; false if there is none.
bool TakeLastPart(std::string_view& text, std::string_view& part)
{
    const size_t dash = text.rfind('-');
    if (dash == std::string_view::npos)
        return false;
    part = text.substr(dash + 1);
    text = text.substr(0, dash);
    return true;
}

/// Whether a process has ended, although its parent has not taken notice yet.
bool IsZombie(pid_t process)
{
    const std::string path = "/proc/" + std::to_string(process) + "/stat";
    const std::unique_ptr<FILE, int (*)(FILE*)> file(OpenDescriptorStream(path.c_str(), "re"),
                                                     std::fclose);
    char text[256]; // the program's name, in brackets, is short
    const size_t size = file ? std::fread(text, 1, sizeof text, file.get()) : 0;
    const std::string_view stat(text, size);
    const size_t bracket = stat.rfind(')');
    return bracket != std::string_view::npos && stat.substr(bracket).starts_with(") Z");
}

bool ReadNumber(std::string_view text, pid_t& number)
{
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() && read.ptr == text.data() + text.size() && number > 0;
}

} // namespace

TemporaryOwner TemporaryOwner::ThisProcess()
{
    static const std::string host = HostName();
    static const std::string boot = BootId();
    return {host, boot, getpid()}; // which changes with a fork
}

bool TemporaryOwner::Read(const char* name)
{
    if (!IsTemporaryName(name))
        return false;
    std::string_view rest = name;
    rest.remove_prefix(kTemporaryPrefix.size());
    rest.remove_suffix(kTemporarySuffix.size());
    std::string_view number, processText, bootText;
    if (!TakeLastPart(rest, number) || !TakeLastPart(rest, processText) ||
        !TakeLastPart(rest, bootText) || !ReadNumber(processText, process))
        return false;
    host = rest;
    boot = bootText;
    return true;
}

bool TemporaryOwner::IsGone() const
{
    const TemporaryOwner self = ThisProcess();
    if (boot.empty() || host != self.host || boot != self.boot)
        return false;
    // An earlier process may have had this id. Files of this process itself are locked.
    return process == self.process || (kill(process, 0) != 0 && errno == ESRCH) ||
           IsZombie(process);
}

std::string TemporaryName(uint32_t number)
{
    std::string name = TemporaryNameStart();
    name += std::to_string(getpid()) + '-' + std::to_string(number);
    name += kTemporarySuffix;
    return name;
}

std::string TemporaryNameStart()
{
    const TemporaryOwner self = TemporaryOwner::ThisProcess();
    return std::string(kTemporaryPrefix) + self.host + '-' + self.boot + '-';
}

bool IsTemporaryNameOf(const char* name, std::string_view start, pid_t process)
{
    std::string_view rest = name;
    if (!IsTemporaryName(name) || !rest.starts_with(start))
        return false;
    rest.remove_prefix(start.size());
    pid_t owner = 0;
    return ReadNumber(rest.substr(0, rest.find('-')), owner) && owner == process;
}

bool IsTemporaryName(const char* name)
{
    const std::string_view text = name;
    return text.size() > kTemporaryPrefix.size() + kTemporarySuffix.size() &&
           text.starts_with(kTemporaryPrefix) && text.ends_with(kTemporarySuffix);
}

} // namespace headless
