#include "info/Disassembly.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "base/FileStream.h"
#include "info/NameText.h"
#include "platform/EffectListing.h"
#include "platform/HostStream.h"
#include "platform/ShaderListing.h"

namespace {

constexpr size_t kMostShaderBytes = size_t{1} << 20;
constexpr size_t kMostBytes = size_t{16} << 20;

/// The contents of a file; false if it cannot be read or is larger than any effect.
bool ReadAll(const std::string& file, std::string& bytesOut)
{
    const FileStream stream(OpenHostStream(file.c_str(), "rb"));
    if (!stream)
        return false;
    bytesOut.resize(kMostBytes + 1);
    const size_t count = ReadStream(stream.get(), bytesOut.data(), bytesOut.size());
    const bool isRead = std::ferror(stream.get()) == 0 && count <= kMostBytes;
    bytesOut.resize(count);
    return isRead;
}

/// Names in an effect are bytes.
void PrintLines(std::string_view listing, Output& out)
{
    for (size_t start = 0; start < listing.size();) {
        const size_t end = std::min(listing.find('\n', start), listing.size());
        out.Line({ShownName(listing.substr(start, end - start))});
        start = end + 1;
    }
}

} // namespace

bool PrintDisassembly(const std::string& file, Output& out, Output& err)
{
    std::string bytes;
    std::string listing;
    std::string reason = "it cannot be read, or is larger than any shader";
    if (ReadAll(file, bytes)) {
        if (IsCompiledEffect(bytes))
            reason = ListEffect(file, bytes, listing);
        else if (bytes.size() <= kMostShaderBytes)
            reason = ListShader(bytes, listing);
    }
    if (!reason.empty()) {
        err.Line({"qsbinfo: ", ShownName(file), ": ", ShownName(reason)});
        return false;
    }
    PrintLines(listing, out);
    return true;
}
