#include "tests/support/RegistryValues.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace fs = std::filesystem;

static fs::path ConfigHome()
{
    return fs::temp_directory_path() / ("qsa2qsb-config-" + std::to_string(getpid()));
}

RegistryValues::RegistryValues(const std::map<std::string, std::string>& values)
{
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    before = configHome != nullptr ? configHome : "";
    fs::create_directories(ConfigHome() / "Fenwhistle");
    if (!values.empty()) {
        std::ofstream file(ConfigHome() / "Fenwhistle" / "QSAView.conf");
        for (const auto& [name, value] : values)
            file << name << '=' << value << '\n';
    }
    setenv("XDG_CONFIG_HOME", ConfigHome().c_str(), 1);
}

RegistryValues::~RegistryValues()
{
    fs::remove_all(ConfigHome());
    if (before.empty())
        unsetenv("XDG_CONFIG_HOME");
    else
        setenv("XDG_CONFIG_HOME", before.c_str(), 1);
}
