#include "tests/support/ScratchDirectory.h"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

ScratchDirectory::ScratchDirectory() : before(fs::current_path())
{
    // Test programs run in parallel; the directory is known to be new because creating an existing
    // one fails.
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
    std::string bytes;
    if (file.is_open())
        bytes.resize(static_cast<size_t>(fs::file_size(path / name)));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_EQ(static_cast<size_t>(file.gcount()), bytes.size()) << name;
    return bytes;
}

bool ScratchDirectory::Has(const std::string& name) const
{
    return fs::exists(path / name);
}
