// Any list of paths, as chunks have them and as users write them: each scene is found once, whatever the paths
// are. All are below one small directory. The first byte selects what ends a path.

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

#include "batch/ChunkName.h"
#include "batch/SceneList.h"
#include "fuzz/support/MemoryFile.h"
#include "fuzz/support/Mutation.h"
#include "fuzz/support/ScratchDirectory.h"
#include "platform/headless/win32/TemporaryName.h"

namespace {

/// A small tree with a link in a circle.
class Tree {
public:
    Tree()
    {
        const auto& root = directory.Path();
        std::filesystem::create_directories(root / "s/t");
        for (const char* name : {"a.qsa", "b.QSA", "c.txt", "s/a.qsa", "s/t/d.qsa"})
            std::ofstream(root / name) << "x";
        std::filesystem::create_directory_symlink(root / "s", root / "s/t/l");
        std::filesystem::create_symlink(root / "none", root / "e.qsa");
    }

    /// The list with each path below the tree.
    std::string Below(std::string_view list, char end) const
    {
        std::string made;
        while (!list.empty()) {
            std::string path(list.substr(0, list.find(end)));
            list.remove_prefix(std::min(path.size() + 1, list.size()));
            for (size_t up = path.find(".."); up != std::string::npos; up = path.find(".."))
                path[up] = '_';
            made += directory.Path().string() + "/" + path + end;
        }
        return made;
    }

    MemoryFile file;

private:
    ScratchDirectory directory;
};

/// Names of chunks and of temporary files lie beside anything in directories.
void ReadNames(const std::string& text)
{
    ChunkName chunk;
    std::string_view rest;
    if (chunk.Read(text, rest) && chunk.Text() + std::string(rest) != text)
        std::abort();
    headless::TemporaryOwner owner;
    if (owner.Read(text.c_str()) && !headless::IsTemporaryName(text.c_str()))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Tree tree;
    if (size < 1)
        return 0;
    const std::string_view text = TextOf(data + 1, size - 1);
    ReadNames(std::string(text));

    BatchOptions options;
    options.listHasNulls = (data[0] & 1) != 0;
    options.includes = {"*.qsa"};
    if ((data[0] & 2) != 0)
        options.excludes = {"s", "[a-b]*"};
    options.listFile = tree.file.Path();
    tree.file.Put(tree.Below(text, options.listHasNulls ? '\0' : '\n'));
    SceneList list;
    if (!list.Collect(options))
        std::abort();
    std::set<std::string> paths;
    for (const SceneEntry& entry : list.Entries()) {
        const bool isNew = paths.insert(entry.path).second;
        if (entry.mirrorFrom > entry.path.size() || (entry.errorNumber == 0 && !isNew))
            std::abort();
    }
    return 0;
}
