#pragma once

#include <cerrno>

#include <unistd.h>

namespace headless {

/// Closes a descriptor whatever comes, and leaves `errno`.
class DescriptorCloser {
public:
    explicit DescriptorCloser(int opened) : descriptor(opened) {}
    ~DescriptorCloser()
    {
        const int reason = errno;
        close(descriptor);
        errno = reason;
    }
    DescriptorCloser(const DescriptorCloser&) = delete;
    DescriptorCloser& operator=(const DescriptorCloser&) = delete;

private:
    int descriptor;
};

} // namespace headless
