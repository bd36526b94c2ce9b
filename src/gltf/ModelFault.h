#pragma once

#include <stdexcept>
#include <string>

/// Why a model cannot be read or a scene not be written, for the user; without the file's name.
class ModelFault : public std::runtime_error {
public:
    explicit ModelFault(const std::string& text) : std::runtime_error(text) {}
};
