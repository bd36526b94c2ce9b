#include "gltf/DataUri.h"

#include <cstdint>

namespace {

int Base64Value(char byte)
{
    if (byte >= 'A' && byte <= 'Z')
        return byte - 'A';
    if (byte >= 'a' && byte <= 'z')
        return byte - 'a' + 26;
    if (byte >= '0' && byte <= '9')
        return byte - '0' + 52;
    return byte == '+' ? 62 : byte == '/' ? 63 : -1;
}

int HexValue(char byte)
{
    if (byte >= '0' && byte <= '9')
        return byte - '0';
    if (byte >= 'a' && byte <= 'f')
        return byte - 'a' + 10;
    return byte >= 'A' && byte <= 'F' ? byte - 'A' + 10 : -1;
}

} // namespace

bool DecodeDataUri(const std::string& uri, std::string& bytesOut)
{
    const size_t comma = uri.find(',');
    if (comma == std::string::npos || comma < 7 || uri.compare(comma - 7, 7, ";base64") != 0)
        return false;
    bytesOut.clear();
    bytesOut.reserve((uri.size() - comma) / 4 * 3);
    uint32_t bits = 0;
    int count = 0;
    for (size_t i = comma + 1; i < uri.size() && uri[i] != '='; ++i) {
        const int value = Base64Value(uri[i]);
        if (value < 0)
            return false;
        bits = bits << 6 | static_cast<uint32_t>(value);
        if (++count % 4 == 1)
            continue;
        const int left = (4 - count % 4) % 4 * 2; // bits that belong to the next byte
        bytesOut += static_cast<char>(bits >> left & 0xFF);
    }
    return true;
}

std::string UnescapedUri(const std::string& uri)
{
    std::string path;
    for (size_t i = 0; i < uri.size(); ++i) {
        const bool isEscape = uri[i] == '%' && i + 2 < uri.size() && HexValue(uri[i + 1]) >= 0 &&
                              HexValue(uri[i + 2]) >= 0;
        path +=
            isEscape ? static_cast<char>(HexValue(uri[i + 1]) * 16 + HexValue(uri[i + 2])) : uri[i];
        i += isEscape ? 2 : 0;
    }
    return path;
}
