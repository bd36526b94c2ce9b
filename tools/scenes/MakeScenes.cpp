// makescenes EXAMPLES DIRECTORY   writes all batches of generated scenes: DIRECTORY/NUMBER with a file "arguments",
// one argument of the converter in each line.

#include "tools/scenes/SceneBatch.h"

#include <cstdio>
#include <exception>
#include <fstream>

static void WriteBatches(const std::filesystem::path& examples,
                         const std::filesystem::path& directory)
{
    for (unsigned batch = 0; batch < kSceneBatches; ++batch) {
        const auto folder = directory / std::to_string(batch);
        std::ofstream list;
        list.exceptions(std::ios::failbit | std::ios::badbit);
        const auto arguments = WriteSceneBatch(batch, examples, folder);
        list.open(folder / "arguments");
        for (const std::string& argument : arguments)
            list << argument << '\n';
        list.close();
    }
}

int main(int count, char** arguments)
{
    if (count != 3) {
        std::fprintf(stderr, "makescenes EXAMPLES DIRECTORY\n");
        return 2;
    }
    try {
        WriteBatches(arguments[1], arguments[2]);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "makescenes: %s\n", fault.what());
        return 1;
    }
    return 0;
}
