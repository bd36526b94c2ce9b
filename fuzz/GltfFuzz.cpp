// Any glTF document: one file, or a text, a zero and the bytes of its buffer, which need no lengths of their
// own. What is read becomes a scene.

#include <cstdint>
#include <cstdio>
#include <filesystem>

#include <unistd.h>

#include "fuzz/ModelUse.h"
#include "import/ReadGltf.h"

namespace fs = std::filesystem;

namespace {

/// A directory for the document, so that it finds nothing beside it.
class Bench {
public:
    Bench() : directory(fs::temp_directory_path() / ("qsa2qsb-gltf-" + std::to_string(getpid())))
    {
        fs::create_directory(directory);
    }
    ~Bench()
    {
        std::error_code ignored;
        fs::remove_all(directory, ignored);
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    std::string Save(const std::string& bytes) const
    {
        const std::string path = (directory / "fuzz.glb").string();
        FILE* stream = std::fopen(path.c_str(), "wb");
        Insist(stream && std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size());
        std::fclose(stream);
        return path;
    }

private:
    fs::path directory;
};

std::string Word(size_t value)
{
    std::string word;
    for (int shift = 0; shift < 32; shift += 8)
        word += static_cast<char>(value >> shift & 0xFF);
    return word;
}

std::string DocumentOf(const std::string& input)
{
    const size_t end = input.find('\0');
    if (input.compare(0, 4, "glTF") == 0 || end == std::string::npos)
        return input;
    const std::string body = input.substr(end + 1);
    return "glTF" + Word(2) + Word(28 + end + body.size()) + Word(end) + "JSON" +
           input.substr(0, end) + Word(body.size()) + std::string("BIN\0", 4) + body;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Bench bench;
    const std::string path =
        bench.Save(DocumentOf(std::string(reinterpret_cast<const char*>(data), size)));
    try {
        NoticeList notices;
        UseModel(ReadGltf(path, "", notices));
    } catch (const ModelFault&) {}
    return 0;
}
