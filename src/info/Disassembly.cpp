#include "info/Disassembly.h"

#include <cstdio>
#include <memory>

#include "info/NameText.h"
#include "platform/ShaderListing.h"

namespace {

constexpr size_t kMostBytes = 1u << 20;

/// The contents of a file; false if it cannot be read or is larger than any shader.
bool ReadAll(const std::string& file, std::string& bytesOut)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(std::fopen(file.c_str(), "rb"), std::fclose);
    if (!stream)
        return false;
    bytesOut.resize(kMostBytes + 1);
    const size_t count = std::fread(bytesOut.data(), 1, bytesOut.size(), stream.get());
    const bool isRead = std::ferror(stream.get()) == 0 && count <= kMostBytes;
    bytesOut.resize(count);
    return isRead;
}

} // namespace

bool PrintDisassembly(const std::string& file, Output& out, Output& err)
{
    std::string bytes;
    std::string listing;
    const std::string reason = ReadAll(file, bytes)
                                   ? ListShader(bytes, listing)
                                   : "it cannot be read, or is larger than any shader";
    if (!reason.empty()) {
        err.Line({"qsbinfo: ", ShownName(file), ": ", ShownName(reason)});
        return false;
    }
    out.Add(listing);
    return true;
}
