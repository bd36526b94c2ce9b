#include "tests/support/ScratchDirectory.h"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace fs = std::filesystem;

ScratchDirectory::ScratchDirectory() : before(fs::current_path())
{
    // Test programs run side by side; the directory is new because making an old one fails.
    auto number = std::chrono::steady_clock::now().time_since_epoch().count();
    do
        path = fs::temp_directory_path() / ("qsa2qsb-" + std::to_string(number++));
    while (!fs::create_directory(path));
    fs::current_path(path);
}

ScratchDirectory::~ScratchDirectory()
{
    std::error_code ignored;
    fs::current_path(before, ignored);
    fs::remove_all(path, ignored);
}

void ScratchDirectory::Write(const std::string& name, const std::string& bytes) const
{
    fs::create_directories((path / name).parent_path());
    std::ofstream file(path / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.good()) << name;
}

std::string ScratchDirectory::Read(const std::string& name) const
{
    std::ifstream file(path / name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool ScratchDirectory::Has(const std::string& name) const
{
    return fs::exists(path / name);
}
