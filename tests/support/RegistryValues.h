#pragma once

#include <map>
#include <string>

/// Puts values under the program's registry key during its lifetime; without values the key itself
/// is absent. The destructor removes the key, so tests do not see each other's values.
class RegistryValues {
public:
    explicit RegistryValues(const std::map<std::string, std::string>& values);
    ~RegistryValues();
    RegistryValues(const RegistryValues&) = delete;
    RegistryValues& operator=(const RegistryValues&) = delete;

private:
    std::string before; // what the host needs to restore the previous state
};
