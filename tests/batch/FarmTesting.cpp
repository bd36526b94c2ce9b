#include "tests/batch/FarmTesting.h"

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace batch_testing {

std::vector<std::string> PathsOfChunk(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::string> paths;
    for (std::string path; std::getline(stream, path, '\0');)
        paths.push_back(path);
    return paths;
}

std::vector<std::string> NamesIn(const std::string& directory, const std::string& extension)
{
    std::vector<std::string> names;
    for (const std::string& name : FilesBelow(directory)) {
        if (name.ends_with(extension))
            names.push_back(name);
    }
    return names;
}

ProgramRun FarmTest::Plan(const std::string& chunks, std::vector<std::string> more)
{
    more.insert(more.begin(), {"plan", "in", "--root", "in", "--chunks", chunks, "-o", "plan"});
    return Batch(more);
}

ProgramRun FarmTest::RunChunk(const std::string& name, std::vector<std::string> more)
{
    more.insert(more.begin(),
                {"run", "--chunk", "plan/" + name + ".list", "--root", "in", "--journal-dir", "j"});
    return Batch(more);
}

void FarmTest::RunAll(const std::vector<std::string>& more)
{
    for (const std::string& chunk : Chunks())
        RunChunk(chunk, more);
}

ProgramRun FarmTest::Merge(std::vector<std::string> more)
{
    more.insert(more.begin(), {"merge", "j", "-o", "all.jsonl", "--root", "in"});
    return Batch(more);
}

std::vector<std::string> FarmTest::Chunks()
{
    std::vector<std::string> chunks = NamesIn("plan", ".list");
    for (std::string& name : chunks)
        name.erase(name.size() - std::string(".list").size());
    return chunks;
}

} // namespace batch_testing
