// Any command line, byte for byte: options, file name and token functions.

#include "app/CommandLine.h"
#include "app/Options.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string line(reinterpret_cast<const char*>(data), size);
    const char* text = line.c_str();
    ParseOptions(text);
    HasHelpSwitch(text);

    const int count = CmdCountTokens(text);
    if (CmdGetToken(count, text) != nullptr ||
        (count > 0 && CmdGetToken(count - 1, text) == nullptr))
        std::abort();

    char name[kFileNameSize];
    for (int n = 1; n <= 3; ++n) {
        if (CmdGetFileName(text, n, name) >= 0 && std::strlen(name) >= sizeof name)
            std::abort();
    }
    return 0;
}
